#include "output/mail.h"

#include <windows.h>
// After windows.h, which it needs.
#include <mapi.h>

#include <array>
#include <optional>
#include <system_error>
#include <vector>

#include "common/files.h"
#include "common/modal_scope.h"
#include "common/vendor.h"
#include "common/wide_text.h"

namespace glimmer {

namespace {

namespace fs = std::filesystem;

// The Unicode half of Simple MAPI; the header of older systems does not have it.
struct FileDescW {
    ULONG reserved;
    ULONG flags;
    ULONG position;
    const wchar_t* pathName;
    const wchar_t* fileName;
    void* fileType;
};
struct MessageW {
    ULONG reserved;
    const wchar_t* subject;
    const wchar_t* noteText;
    const wchar_t* messageType;
    const wchar_t* dateReceived;
    const wchar_t* conversationId;
    FLAGS flags;
    void* originator;
    ULONG recipCount;
    void* recips;
    ULONG fileCount;
    FileDescW* files;
};
using SendMailW = ULONG(WINAPI*)(LHANDLE, ULONG_PTR, MessageW*, FLAGS, ULONG);
using SendMailA = ULONG(WINAPI*)(LHANDLE, ULONG_PTR, MapiMessage*, FLAGS, ULONG);

constexpr FLAGS mailFlags = MAPI_DIALOG | MAPI_LOGON_UI;
constexpr ULONG attachAtEnd = 0xFFFFFFFF;  // not inside the text

/// The text in the system's code page; nothing when that has not all of its characters.
std::optional<std::string> ansi(const std::wstring& text) {
    if (GetACP() == CP_UTF8) return fromWide(text);
    std::string out(text.size() * 4 + 1, '\0');
    BOOL lost = FALSE;
    const int length = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.c_str(), static_cast<int>(text.size()),
                                           out.data(), static_cast<int>(out.size()), nullptr, &lost);
    if (lost != FALSE) return std::nullopt;
    out.resize(static_cast<size_t>(length));
    return out;
}

/// A path to the same file that the system's code page can express: its short name if need be.
std::wstring plainPath(const fs::path& path) {
    if (ansi(path.wstring())) return path.wstring();
    std::array<wchar_t, MAX_PATH> name{};
    const DWORD length = GetShortPathNameW(path.c_str(), name.data(), static_cast<DWORD>(name.size()));
    return length > 0 && length < name.size() ? std::wstring(name.data(), length) : path.wstring();
}

struct FreeLibraryCall {
    void operator()(HMODULE module) const { FreeLibrary(module); }
};

template <class Function>
Function functionOf(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

ULONG sendUnicode(SendMailW send, const std::wstring& subject, const std::wstring& body,
                  std::span<const fs::path> attachments) {
    // The path in a form that survives a system which hands it to a mail program without Unicode.
    std::vector<std::wstring> paths;
    std::vector<std::wstring> names;
    for (const fs::path& path : attachments) {
        paths.push_back(plainPath(path));
        names.push_back(path.filename().wstring());
    }
    std::vector<FileDescW> files;
    for (size_t i = 0; i < attachments.size(); ++i)
        files.push_back({0, 0, attachAtEnd, paths[i].c_str(), names[i].c_str(), nullptr});
    MessageW message{};
    message.subject = subject.c_str();
    message.noteText = body.c_str();
    message.fileCount = static_cast<ULONG>(files.size());
    message.files = files.data();
    return send(0, 0, &message, mailFlags, 0);
}

ULONG sendAnsi(SendMailA send, const std::wstring& subject, const std::wstring& body,
               std::span<const fs::path> attachments) {
    std::vector<std::string> paths;
    std::vector<std::string> names;
    for (const fs::path& path : attachments) {
        paths.push_back(ansi(plainPath(path)).value_or(path.string()));
        names.push_back(ansi(path.filename().wstring()).value_or(fs::path(paths.back()).filename().string()));
    }
    std::vector<MapiFileDesc> files;
    for (size_t i = 0; i < paths.size(); ++i)
        files.push_back({0, 0, attachAtEnd, paths[i].data(), names[i].data(), nullptr});
    std::string subjectText = ansi(subject).value_or("Screenshots");
    std::string bodyText = ansi(body).value_or("");
    MapiMessage message{};
    message.lpszSubject = subjectText.data();
    message.lpszNoteText = bodyText.data();
    message.nFileCount = static_cast<ULONG>(files.size());
    message.lpFiles = files.data();
    return send(0, 0, &message, mailFlags, 0);
}

bool hasValue(HKEY root) {
    std::array<wchar_t, 256> name{};
    DWORD size = sizeof name - sizeof(wchar_t);
    return RegGetValueW(root, L"Software\\Clients\\Mail", nullptr, RRF_RT_REG_SZ, nullptr, name.data(), &size) ==
               ERROR_SUCCESS &&
           name[0] != L'\0';
}

}  // namespace

bool hasMailProgram() { return hasValue(HKEY_CURRENT_USER) || hasValue(HKEY_LOCAL_MACHINE); }

MailOutcome sendMail(const std::string& subject, const std::string& body, std::span<const fs::path> attachments) {
    const std::unique_ptr<std::remove_pointer_t<HMODULE>, FreeLibraryCall> library(LoadLibraryW(L"mapi32.dll"));
    if (!library) return MailOutcome::Failed;
    const ModalScope open;  // the mail program asks in the middle of this call
    ULONG result = MAPI_E_NOT_SUPPORTED;
    // A mail program may change the current folder.
    std::error_code error;
    const fs::path folder = fs::current_path(error);
    if (const auto send = functionOf<SendMailW>(library.get(), "MAPISendMailW")) {
        result = sendUnicode(send, toWide(subject), toWide(body), attachments);
    }
    if (result == MAPI_E_NOT_SUPPORTED) {
        if (const auto send = functionOf<SendMailA>(library.get(), "MAPISendMail"))
            result = sendAnsi(send, toWide(subject), toWide(body), attachments);
    }
    fs::current_path(folder, error);
    if (result == SUCCESS_SUCCESS) return MailOutcome::Handed;
    return result == MAPI_E_USER_ABORT ? MailOutcome::GivenUp : MailOutcome::Failed;
}

std::string mailFooter() { return std::string("\r\n\r\n\r\n") + vendorSite + " - Free screenshots by Vistrane."; }

}  // namespace glimmer
