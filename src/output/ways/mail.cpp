#include "output/ways/mail.h"

#include <wx/timer.h>
// clang-format off
#include <windows.h>
#include <mapi.h>
#include <objbase.h>
// clang-format on

#include <algorithm>
#include <array>
#include <atomic>
#include <deque>
#include <exception>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <system_error>
#include <utility>

#include "common/files.h"
#include "common/modal_scope.h"
#include "common/surroundings.h"
#include "common/system_library.h"
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

ULONG sendUnicode(SendMailW send, ULONG_PTR window, const std::wstring& subject, const std::wstring& body,
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
    return send(0, window, &message, mailFlags, 0);
}

ULONG sendAnsi(SendMailA send, ULONG_PTR window, const std::wstring& subject, const std::wstring& body,
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
    return send(0, window, &message, mailFlags, 0);
}

bool hasValue(HKEY root) {
    std::array<wchar_t, 256> name{};
    DWORD size = sizeof name - sizeof(wchar_t);
    return RegGetValueW(root, L"Software\\Clients\\Mail", nullptr, RRF_RT_REG_SZ, nullptr, name.data(), &size) ==
               ERROR_SUCCESS &&
           name[0] != L'\0';
}

/// In the thread that is the mail program's: it may show windows, and leave what it likes in the thread.
MailOutcome handToProgram(const Mail& mail, HWND window) {
    // It stays loaded: mail programs leave threads behind that run in it.
    const HMODULE library = systemLibrary(L"mapi32.dll");
    if (library == nullptr) return MailOutcome::Failed;
    const std::wstring subject = toWide(mail.subject);
    const std::wstring body = toWide(mail.body);
    const auto parent = reinterpret_cast<ULONG_PTR>(window);
    ULONG result = MAPI_E_NOT_SUPPORTED;
    if (const auto send = systemFunction<SendMailW>(L"mapi32.dll", "MAPISendMailW"))
        result = sendUnicode(send, parent, subject, body, mail.attachments);
    if (result == MAPI_E_NOT_SUPPORTED) {
        if (const auto send = systemFunction<SendMailA>(L"mapi32.dll", "MAPISendMail"))
            result = sendAnsi(send, parent, subject, body, mail.attachments);
    }
    if (result == SUCCESS_SUCCESS) return MailOutcome::Handed;
    return result == MAPI_E_USER_ABORT ? MailOutcome::GivenUp : MailOutcome::Failed;
}

/// One message on its way. The worker only ever sees what it holds, so that everything else may go meanwhile.
struct Sending {
    Mail mail;
    HWND window = nullptr;
    HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::atomic<MailOutcome> result{MailOutcome::Failed};
    std::function<void(MailOutcome)> later;  ///< of the thread that sends

    Sending() = default;
    ~Sending() { CloseHandle(done); }
    Sending(const Sending&) = delete;
    Sending& operator=(const Sending&) = delete;
    Sending(Sending&&) = delete;
    Sending& operator=(Sending&&) = delete;
    [[nodiscard]] std::optional<MailOutcome> outcome() const {
        if (WaitForSingleObject(done, 0) != WAIT_OBJECT_0) return std::nullopt;
        return result.load();
    }
};

/// What is to be sent one after the other. Never destroyed: the worker may outlive everything.
struct Outbox {
    std::mutex mutex;
    std::deque<std::shared_ptr<Sending>> queue;
    bool working = false;
    std::list<std::shared_ptr<Sending>> watched;  ///< of the sending thread alone: whose outcome nobody knows yet
};
Outbox& outbox() {
    static auto* const box = new Outbox;
    return *box;
}

std::shared_ptr<Sending> nextToSend() {
    const std::lock_guard lock(outbox().mutex);
    if (outbox().queue.empty()) {
        outbox().working = false;
        return nullptr;
    }
    std::shared_ptr<Sending> next = outbox().queue.front();
    outbox().queue.pop_front();
    return next;
}

DWORD WINAPI work(void* /*unused*/) {
    const bool apartment = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    while (const std::shared_ptr<Sending> sending = nextToSend()) {
        try {
            sending->result = handToProgram(sending->mail, sending->window);
        } catch (...) {
            sending->result = MailOutcome::Failed;  // no memory, no path that can be expressed
        }
        SetEvent(sending->done);
    }
    if (apartment) CoUninitialize();
    return 0;
}

/// Null when there is no thread to be had.
std::shared_ptr<Sending> post(Mail mail, void* window) {
    auto sending = std::make_shared<Sending>();
    sending->mail = std::move(mail);
    sending->window = static_cast<HWND>(window);
    Outbox& box = outbox();
    const std::lock_guard lock(box.mutex);
    box.queue.push_back(sending);
    if (!box.working) {
        HANDLE const thread = CreateThread(nullptr, 0, work, nullptr, 0, nullptr);
        if (thread == nullptr) {
            box.queue.pop_back();
            return nullptr;
        }
        CloseHandle(thread);
        box.working = true;
    }
    box.watched.push_back(sending);
    return sending;
}

/// Until the outcome is there or another window has come to the front, the mail program's. What is sent to our windows
/// meanwhile arrives, and they paint; what the user does waits.
void waitForWindow(const Sending& sending, HWND before) {
    constexpr ULONGLONG patience = 5000;  // milliseconds
    constexpr DWORD step = 50;
    const ULONGLONG begin = GetTickCount64();
    while (GetTickCount64() - begin < patience) {
        if (MsgWaitForMultipleObjects(1, &sending.done, FALSE, step, QS_PAINT | QS_SENDMESSAGE) == WAIT_OBJECT_0)
            return;
        MSG message;
        // One a round: a window that never has enough of painting does not keep this from its end.
        if (PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE) != FALSE) {
            const HostSurroundings theirs;  // it may be a window of the host's; ours have their own
            DispatchMessageW(&message);
        }
        HWND const front = GetForegroundWindow();
        if (front != nullptr && front != before && GetWindowThreadProcessId(front, nullptr) != GetCurrentThreadId())
            return;
    }
}

/// Looks after messages that are open longer. A timer reaches this thread through any loop, a host's too.
class MailWatch : public wxTimer {
public:
    void Notify() override {
        std::list<std::shared_ptr<Sending>>& watched = outbox().watched;
        const auto done = std::find_if(watched.begin(), watched.end(),
                                       [](const auto& sending) { return sending->outcome().has_value(); });
        if (done == watched.end()) return;
        const std::shared_ptr<Sending> sending = *done;
        watched.erase(done);
        if (watched.empty()) Stop();
        if (sending->later) sending->later(*sending->outcome());
    }
};

}  // namespace

bool hasMailProgram() { return hasValue(HKEY_CURRENT_USER) || hasValue(HKEY_LOCAL_MACHINE); }

MailOutcome sendMail(Mail mail, void* window, std::function<void(MailOutcome)> later) {
    const bool waits = mailIsOpen();
    HWND const before = GetForegroundWindow();
    const std::shared_ptr<Sending> sending = post(std::move(mail), window);
    if (!sending) return MailOutcome::Failed;
    const ModalScope open;  // a wish to shut down waits for this moment
    if (!waits) waitForWindow(*sending, before);
    if (const std::optional<MailOutcome> outcome = sending->outcome()) {
        outbox().watched.remove(sending);
        return *outcome;
    }
    sending->later = std::move(later);
    static auto* const watch = new MailWatch;  // never destroyed, like the toolkit
    constexpr int period = 100;                // milliseconds
    watch->Start(period);
    return waits ? MailOutcome::Waiting : MailOutcome::Open;
}

bool mailIsOpen() {
    const auto& watched = outbox().watched;
    return std::any_of(watched.begin(), watched.end(), [](const auto& sending) { return !sending->outcome(); });
}

void forgetMails() {
    for (const std::shared_ptr<Sending>& sending : outbox().watched) sending->later = nullptr;
}

std::string mailFooter() { return std::string("\r\n\r\n\r\n") + vendorSite + " - Free screenshots by Vistrane."; }

}  // namespace glimmer
