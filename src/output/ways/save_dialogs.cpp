#include "output/ways/save_dialogs.h"

#include <windows.h>
// After windows.h, which it needs.
#include <shobjidl.h>

#include <array>
#include <span>
#include <vector>

#include "common/boundary.h"
#include "common/files.h"
#include "common/modal_scope.h"
#include "common/text.h"
#include "common/wide_text.h"
#include "settings/message_box.h"

// The system's common item dialog. It asks before it overwrites, wants a path that exists, has no read-only box and
// can be resized without being told so.

namespace glimmer {

namespace {

/// A COM object that is let go of at the end.
template <class T>
class ComObject {
public:
    ComObject() = default;
    ~ComObject() {
        if (object_ != nullptr) object_->Release();
    }
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;
    ComObject(ComObject&&) = delete;
    ComObject& operator=(ComObject&&) = delete;
    T** out() { return &object_; }
    [[nodiscard]] T* get() const { return object_; }
    T* operator->() const { return object_; }

private:
    T* object_ = nullptr;
};

/// Hears of the user's choices in the picture dialog. Lives on the stack of the function that shows the dialog, so
/// its references are not counted.
class PictureDialogEvents : public IFileDialogEvents {
public:
    virtual ~PictureDialogEvents() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        if (IsEqualIID(id, __uuidof(IUnknown)) || IsEqualIID(id, __uuidof(IFileDialogEvents))) {
            *object = this;
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE OnFileOk(IFileDialog* /*dialog*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnFolderChanging(IFileDialog* /*dialog*/, IShellItem* /*item*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnFolderChange(IFileDialog* /*dialog*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnSelectionChange(IFileDialog* /*dialog*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnShareViolation(IFileDialog* /*dialog*/, IShellItem* /*item*/,
                                               FDE_SHAREVIOLATION_RESPONSE* /*response*/) override {
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnTypeChange(IFileDialog* dialog) override {
        guarded([dialog] { dlgSavePictureTypeChange(*dialog); });
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnOverwrite(IFileDialog* /*dialog*/, IShellItem* /*item*/,
                                          FDE_OVERWRITE_RESPONSE* /*response*/) override {
        return S_OK;
    }

private:
    /// The proposed name gets the extension of the format that was chosen.
    static void dlgSavePictureTypeChange(IFileDialog& dialog) {
        UINT index = 0;
        wchar_t* name = nullptr;
        if (FAILED(dialog.GetFileTypeIndex(&index)) || index == 0 || FAILED(dialog.GetFileName(&name)) ||
            name == nullptr)
            return;
        const std::string proposed = fromWide(std::wstring_view(name));
        CoTaskMemFree(name);
        const auto format = static_cast<PictureFormat>(index - 1);
        dialog.SetDefaultExtension(toWide(extensionOf(format).substr(1)).c_str());
        dialog.SetFileName(toWide(withFormatExtension(proposed, format)).c_str());
    }
};

struct Filter {
    std::wstring text;
    std::wstring pattern;
};

struct Question {
    enum Kind { File, Folder } kind;
    const wchar_t* title;
    std::filesystem::path folder;
    std::string name;  ///< of the file, with extension
    std::string extension;
    std::span<const Filter> filters;
    UINT filter = 0;                        ///< from 0
    PictureDialogEvents* events = nullptr;  ///< may be null

    /// The same once more, with what was chosen and is not wanted after all.
    void askAgain(const std::filesystem::path& path, UINT chosen) {
        folder = path.parent_path();
        name = utf8FromPath(path.filename());
        filter = chosen;
    }
};

struct Answer {
    std::filesystem::path path;
    UINT filter = 0;  ///< from 0
};

constexpr DWORD filterBox = 1;    // the dialog's own controls
constexpr DWORD filterGroup = 2;  // with the label

/// A dialog that asks for a file's name has a box for the filters; one that asks for a folder gets one.
void offerFilters(IFileDialog& dialog, const Question& question) {
    if (question.kind == Question::File) {
        std::vector<COMDLG_FILTERSPEC> types;
        for (const Filter& filter : question.filters) types.push_back({filter.text.c_str(), filter.pattern.c_str()});
        dialog.SetFileTypes(static_cast<UINT>(types.size()), types.data());
        dialog.SetFileTypeIndex(question.filter + 1);
        dialog.SetDefaultExtension(toWide(question.extension.substr(1)).c_str());
        dialog.SetFileName(toWide(question.name).c_str());
        return;
    }
    ComObject<IFileDialogCustomize> customize;
    if (FAILED(dialog.QueryInterface(__uuidof(IFileDialogCustomize), reinterpret_cast<void**>(customize.out()))))
        return;
    customize->StartVisualGroup(filterGroup, L"Save as type:");
    customize->AddComboBox(filterBox);
    for (UINT i = 0; i < question.filters.size(); ++i)
        customize->AddControlItem(filterBox, i, question.filters[i].text.c_str());
    customize->SetSelectedControlItem(filterBox, question.filter);
    customize->EndVisualGroup();
}

UINT chosenFilter(IFileDialog& dialog, const Question& question) {
    if (question.kind == Question::File) {
        UINT index = 0;
        return SUCCEEDED(dialog.GetFileTypeIndex(&index)) && index > 0 ? index - 1 : question.filter;
    }
    ComObject<IFileDialogCustomize> customize;
    DWORD item = question.filter;
    if (SUCCEEDED(dialog.QueryInterface(__uuidof(IFileDialogCustomize), reinterpret_cast<void**>(customize.out()))))
        customize->GetSelectedControlItem(filterBox, &item);
    return item < question.filters.size() ? item : question.filter;
}

std::optional<Answer> ask(const Question& question) {
    // Counted by the system; fails harmlessly in a thread that a host has made its own kind of.
    const bool initialized = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    struct Leave {
        bool initialized;
        ~Leave() {
            if (initialized) CoUninitialize();
        }
    } const leave{initialized};

    const bool file = question.kind == Question::File;
    const ModalScope open;  // until the dialog is gone with all its windows
    ComObject<IFileDialog> dialog;
    if (FAILED(CoCreateInstance(file ? __uuidof(FileSaveDialog) : __uuidof(FileOpenDialog), nullptr,
                                CLSCTX_INPROC_SERVER, __uuidof(IFileDialog), reinterpret_cast<void**>(dialog.out()))))
        return std::nullopt;
    offerFilters(*dialog.get(), question);
    DWORD flags = 0;
    dialog->GetOptions(&flags);
    dialog->SetOptions(flags | FOS_PATHMUSTEXIST | FOS_FORCEFILESYSTEM |
                       (file ? FOS_OVERWRITEPROMPT | FOS_NOREADONLYRETURN : FOS_PICKFOLDERS));
    // After the options, which bring a title and a caption of their own.
    dialog->SetTitle(question.title);
    dialog->SetOkButtonLabel(L"&Save");
    ComObject<IShellItem> folder;
    if (SUCCEEDED(SHCreateItemFromParsingName(question.folder.c_str(), nullptr, __uuidof(IShellItem),
                                              reinterpret_cast<void**>(folder.out()))))
        dialog->SetFolder(folder.get());
    DWORD cookie = 0;
    if (question.events != nullptr) dialog->Advise(question.events, &cookie);
    const HRESULT shown = dialog->Show(GetActiveWindow());
    if (question.events != nullptr) dialog->Unadvise(cookie);

    ComObject<IShellItem> item;
    wchar_t* path = nullptr;
    if (FAILED(shown) || FAILED(dialog->GetResult(item.out())) ||
        FAILED(item->GetDisplayName(SIGDN_FILESYSPATH, &path)))
        return std::nullopt;
    const Answer answer{path, chosenFilter(*dialog.get(), question)};
    CoTaskMemFree(path);
    return answer;
}

/// The dialog asks before it overwrites the path that was typed. Where an extension was added since, that is another
/// file, and the question is still to be asked.
bool mayWrite(const std::filesystem::path& typed, const std::filesystem::path& path, const wchar_t* title) {
    std::error_code error;
    if (path == typed || !std::filesystem::exists(path, error)) return true;
    Message question;
    question.caption = fromWide(std::wstring_view(title));
    question.text = utf8FromPath(path.filename()) + " already exists.\nDo you want to replace it?";
    question.icon = MessageIcon::Warning;
    question.buttons = MessageButtons::YesNo;
    question.standard = MessageAnswer::No;
    return showMessage(question) == MessageAnswer::Yes;
}

class SystemSaveDialogs : public SaveDialogs {
public:
    std::optional<PictureTarget> askPicture(const std::filesystem::path& folder, const std::string& name,
                                            PictureFormat format) override {
        const std::vector<Filter> filters = pictureFilters();
        PictureDialogEvents events;
        const std::string extension(extensionOf(format));
        Question question{Question::File, L"Save Screenshot...",     folder, name + extension, extension,
                          filters,        static_cast<UINT>(format), &events};
        while (const auto answer = ask(question)) {
            // The filter decides the format, whatever the user typed behind the last dot.
            PictureTarget target{answer->path, static_cast<PictureFormat>(answer->filter)};
            question.extension = extensionOf(target.format);
            if (formatOfName(utf8FromPath(target.path)) != target.format)
                target.path += pathFromUtf8(question.extension);
            if (mayWrite(answer->path, target.path, question.title)) return target;
            question.askAgain(target.path, answer->filter);
        }
        return std::nullopt;
    }

    std::optional<PictureTarget> askFolder(const std::filesystem::path& folder, PictureFormat format) override {
        const std::vector<Filter> filters = pictureFilters();
        const auto answer =
            ask({Question::Folder, L"Save Screenshots to Disk", folder, {}, {}, filters, static_cast<UINT>(format)});
        if (!answer) return std::nullopt;
        return PictureTarget{answer->path, static_cast<PictureFormat>(answer->filter)};
    }

    std::optional<std::filesystem::path> askProject(const std::filesystem::path& folder,
                                                    const std::string& name) override {
        const std::array<Filter, 1> filters{{{L"Glimmerpad Project file (*.gmp)", L"*.gmp"}}};
        return withExtension({Question::File, L"Save Project as", folder, name + ".gmp", ".gmp", filters});
    }

    std::optional<std::filesystem::path> askPage(const std::filesystem::path& folder,
                                                 const std::string& name) override {
        const std::array<Filter, 1> filters{{{L"Web page (*.html)", L"*.html"}}};
        return withExtension({Question::File, L"Save HTML page as", folder, name + ".html", ".html", filters});
    }

private:
    static std::vector<Filter> pictureFilters() {
        std::vector<Filter> filters;
        for (const PictureFormatInfo& info : pictureFormats())
            filters.push_back({toWide(info.filterText), L"*" + toWide(info.extension)});
        return filters;
    }
    static std::optional<std::filesystem::path> withExtension(Question question) {
        while (const auto answer = ask(question)) {
            std::filesystem::path path = answer->path;
            if (!equalsIgnoringCase(utf8FromPath(path.extension()), question.extension))
                path += pathFromUtf8(question.extension);
            if (mayWrite(answer->path, path, question.title)) return path;
            question.askAgain(path, answer->filter);
        }
        return std::nullopt;
    }
};

SaveDialogs* replacement = nullptr;

}  // namespace

SaveDialogs& saveDialogs() {
    static SystemSaveDialogs dialogs;
    if (replacement != nullptr) return *replacement;
    return dialogs;
}

void setSaveDialogs(SaveDialogs* dialogs) { replacement = dialogs; }

std::string withFormatExtension(const std::string& fileName, PictureFormat format) {
    std::string body = fileName;
    if (formatOfName(body)) body.erase(body.find_last_of('.'));
    return body + std::string(extensionOf(format));
}

}  // namespace glimmer
