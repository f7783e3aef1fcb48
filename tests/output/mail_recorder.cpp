// A mail program of the tests: a Simple MAPI provider that writes down what it is handed. The environment says where
// (GLIMMER_MAIL_RECORD, a folder) and what it answers (GLIMMER_MAIL_ANSWER, a number). Built twice, with and without
// the Unicode entry point, since mail programs come in both kinds.

#include <windows.h>
// After windows.h, which it needs.
#include <mapi.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

std::string utf8(const wchar_t* text) {
    if (text == nullptr) return "(none)";
    std::string out(4 * lstrlenW(text) + 1, '\0');
    out.resize(static_cast<size_t>(
        WideCharToMultiByte(CP_UTF8, 0, text, -1, out.data(), static_cast<int>(out.size()), nullptr, nullptr) - 1));
    return out;
}

std::wstring wide(const char* text) {
    if (text == nullptr) return L"(none)";
    std::wstring out(static_cast<size_t>(lstrlenA(text)) + 1, L'\0');
    out.resize(
        static_cast<size_t>(MultiByteToWideChar(CP_ACP, 0, text, -1, out.data(), static_cast<int>(out.size())) - 1));
    return out;
}

std::wstring environment(const wchar_t* name) {
    std::array<wchar_t, 1024> value{};
    GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size()));
    return value.data();
}

/// One record a message, with copies of the attachments, which the sender may remove.
class Record {
public:
    Record(const char* kind, const std::wstring& subject, const std::wstring& note, ULONG flags)
        : folder_(environment(L"GLIMMER_MAIL_RECORD")) {
        text_ = std::string(kind) + "\nsubject " + utf8(subject.c_str()) + "\nnote " + utf8(note.c_str()) + "\nflags " +
                std::to_string(flags) + "\n";
    }
    void attach(const std::wstring& path, const std::wstring& name) {
        text_ += "file " + utf8(name.c_str()) + "\n";
        CopyFileW(path.c_str(), (folder_ + L"\\" + std::to_wstring(++count_) + L".attachment").c_str(), FALSE);
    }
    ULONG close() {
        writeMessage();
        std::ofstream(std::filesystem::path(folder_) / "record", std::ios::binary) << text_;
        return static_cast<ULONG>(std::wcstoul(environment(L"GLIMMER_MAIL_ANSWER").c_str(), nullptr, 10));
    }

private:
    /// As one in whose window the user writes: where the environment names an event (GLIMMER_MAIL_WAIT), it comes to
    /// the front and stays until that is set.
    static void writeMessage() {
        const std::wstring name = environment(L"GLIMMER_MAIL_WAIT");
        if (name.empty()) return;
        HANDLE const sent = OpenEventW(SYNCHRONIZE, FALSE, name.c_str());
        HWND const window = CreateWindowExW(0, L"STATIC", L"Message of the tests", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20,
                                            20, 300, 200, nullptr, nullptr, nullptr, nullptr);
        SetForegroundWindow(window);
        while (MsgWaitForMultipleObjects(1, &sent, FALSE, INFINITE, QS_ALLINPUT) == WAIT_OBJECT_0 + 1) {
            MSG message;
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) DispatchMessageW(&message);
        }
        DestroyWindow(window);
        CloseHandle(sent);
    }
    std::wstring folder_;
    std::string text_;
    int count_ = 0;
};

}  // namespace

extern "C" __declspec(dllexport) ULONG WINAPI
    MAPISendMail(LHANDLE /*session*/, ULONG_PTR /*window*/, MapiMessage* message, FLAGS flags, ULONG /*reserved*/) {
    Record record("MAPISendMail", wide(message->lpszSubject), wide(message->lpszNoteText), flags);
    for (ULONG i = 0; i < message->nFileCount; ++i)
        record.attach(wide(message->lpFiles[i].lpszPathName), wide(message->lpFiles[i].lpszFileName));
    return record.close();
}

#ifdef GLIMMER_UNICODE_MAIL

struct WideFile {
    ULONG reserved, flags, position;
    const wchar_t* path;
    const wchar_t* name;
    void* type;
};
struct WideMessage {
    ULONG reserved;
    const wchar_t *subject, *note, *type, *date, *conversation;
    FLAGS flags;
    void* originator;
    ULONG recipients;
    void* recipient;
    ULONG count;
    WideFile* files;
};

extern "C" __declspec(dllexport) ULONG WINAPI
    MAPISendMailW(LHANDLE /*session*/, ULONG_PTR /*window*/, WideMessage* message, FLAGS flags, ULONG /*reserved*/) {
    Record record("MAPISendMailW", message->subject, message->note, flags);
    for (ULONG i = 0; i < message->count; ++i) record.attach(message->files[i].path, message->files[i].name);
    return record.close();
}

#endif
