#include "host/program/single_instance.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "common/boundary.h"
#include "common/wide_text.h"
#include "host/program/miscutils.h"

namespace glimmer {

namespace {

constexpr wchar_t mutexName[] = L"ZK2_APPLICATION_STARTED";
constexpr wchar_t mappingName[] = L"ZK_SHARED_MEM";
/// Held by the one start that hands over now.
constexpr wchar_t turnName[] = L"ZK2_APPLICATION_HANDOVER";
/// Held by the one instance that takes the text now: with "-MULTI" there are several.
constexpr wchar_t takingName[] = L"ZK2_APPLICATION_TAKING";
/// Set when the start whose turn it is was heard.
constexpr wchar_t heardName[] = L"ZK2_APPLICATION_HEARD";
constexpr wchar_t receiverMark[] = L"ZK2_APPLICATION_RECEIVER";
/// Always the same size, whatever the text: a mapping that is still there from another start must hold it.
constexpr uint32_t mappingBytes = (10000 + 1) * sizeof(wchar_t);

/// Closed when it goes; that alone gives no ownership of a mutex back.
class Handle {
public:
    explicit Handle(HANDLE handle) : handle_(handle) {}
    ~Handle() {
        if (handle_ != nullptr) CloseHandle(handle_);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle(Handle&&) = delete;
    Handle& operator=(Handle&&) = delete;
    [[nodiscard]] HANDLE get() const { return handle_; }

private:
    HANDLE handle_;
};

/// The mutex of the instance; stays open until the process ends.
HANDLE instanceMutex = nullptr;

/// Bytes of a mapped view, whole pages.
size_t viewSize(const void* view) {
    MEMORY_BASIC_INFORMATION region = {};
    return VirtualQuery(view, &region, sizeof region) != 0 ? region.RegionSize : 0;
}

/// What became of waiting for the first of some objects: its place, or nothing in time. A mutex whose owner has ended
/// is had like one that was given back.
std::optional<size_t> waitForOne(const std::vector<HANDLE>& objects, DWORD milliseconds) {
    const auto count = static_cast<DWORD>(objects.size());
    const DWORD result = WaitForMultipleObjects(count, objects.data(), FALSE, milliseconds);
    if (result < WAIT_OBJECT_0 + count) return result - WAIT_OBJECT_0;
    if (result >= WAIT_ABANDONED_0 && result < WAIT_ABANDONED_0 + count) return result - WAIT_ABANDONED_0;
    return std::nullopt;
}

BOOL CALLBACK addReceiver(HWND window, LPARAM list) {
    return guarded(FALSE, [=] {
        if (GetPropW(window, receiverMark) != nullptr) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
        return TRUE;
    });
}

/// Windows that take the messages, of instances that are up.
std::vector<HWND> receivers() {
    std::vector<HWND> found;
    EnumWindows(addReceiver, reinterpret_cast<LPARAM>(&found));
    return found;
}

void letTakeForeground(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != 0) AllowSetForegroundWindow(process);
}

/// The text where an instance finds it, as long as the object lives.
class HandedText {
public:
    /// Nothing is put anywhere when there is no text.
    explicit HandedText(const std::optional<std::string>& text) {
        if (!text) return;
        const std::wstring units = toWide(*text);
        // The mapping stays open on purpose: it ends with the process.
        view_ = static_cast<volatile wchar_t*>(MapSharedView(nullptr, mappingName, mappingBytes, true));
        fits_ = view_ != nullptr && viewSize(address()) >= (units.size() + 1) * sizeof(wchar_t);
        if (!fits_) return;
        std::memset(address(), 0, viewSize(address()));
        std::memcpy(address(), units.data(), units.size() * sizeof(wchar_t));
    }
    /// What nobody has taken, nobody takes any more.
    ~HandedText() {
        if (view_ == nullptr) return;
        *view_ = L'\0';
        UnmapViewOfFile(address());
    }
    HandedText(const HandedText&) = delete;
    HandedText& operator=(const HandedText&) = delete;
    HandedText(HandedText&&) = delete;
    HandedText& operator=(HandedText&&) = delete;

    /// Also when there is none, or no room for it: then the other instance only comes back.
    [[nodiscard]] bool taken() const { return !fits_ || view_ == nullptr || *view_ == L'\0'; }

private:
    [[nodiscard]] void* address() const { return const_cast<wchar_t*>(view_); }
    volatile wchar_t* view_ = nullptr;
    bool fits_ = true;
};

/// Has the turn until it goes.
class Turn {
public:
    explicit Turn(HANDLE mutex) : mutex_(mutex) {}
    ~Turn() { ReleaseMutex(mutex_); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    Turn(Turn&&) = delete;
    Turn& operator=(Turn&&) = delete;

private:
    HANDLE mutex_;
};

/// Posts to all that are there, then also to instances that come up later, until one has heard.
bool postUntilHeard(const HandedText& text, HANDLE heard, DWORD limit) {
    constexpr DWORD step = 50;  // milliseconds
    std::vector<HWND> told = receivers();
    std::for_each(told.begin(), told.end(), letTakeForeground);
    PostMessageW(HWND_BROADCAST, restoreMessage(), 0, 0);
    for (const ULONGLONG begin = GetTickCount64(); GetTickCount64() - begin < limit;) {
        const std::optional<size_t> which = waitForOne({instanceMutex, heard}, step);
        if (which == 0) return false;
        if (which && text.taken()) return true;
        for (HWND window : receivers()) {
            if (std::find(told.begin(), told.end(), window) != told.end()) continue;
            told.push_back(window);
            letTakeForeground(window);
            PostMessageW(window, restoreMessage(), 0, 0);
        }
    }
    return false;
}

}  // namespace

InstanceClaim claimInstance() {
    instanceMutex = CreateMutexW(nullptr, TRUE, mutexName);
    const DWORD error = GetLastError();
    if (instanceMutex != nullptr) return error == ERROR_ALREADY_EXISTS ? InstanceClaim::Another : InstanceClaim::First;
    // One that runs as administrator: the system lets no message of ours through to it.
    return error == ERROR_ACCESS_DENIED ? InstanceClaim::OutOfReach : InstanceClaim::First;
}

uint32_t terminateMessage() {
    static const UINT message = RegisterWindowMessageW(L"ZK2_APPLICATION_TERMINATE");
    return message;
}

uint32_t restoreMessage() {
    static const UINT message = RegisterWindowMessageW(L"ZK2_APPLICATION_RESTORE");
    return message;
}

void sendTerminate() {
    constexpr UINT longest = 2000;  // milliseconds for each window
    SendMessageTimeoutW(HWND_BROADCAST, terminateMessage(), 0, 0, SMTO_ABORTIFHUNG, longest, nullptr);
}

bool handOver(const std::optional<std::string>& text, uint32_t limitMilliseconds) {
    const Handle turn(CreateMutexW(nullptr, FALSE, turnName));
    const Handle heard(CreateEventW(nullptr, FALSE, FALSE, heardName));
    if (turn.get() == nullptr || heard.get() == nullptr) return false;
    // Those before are heard at once, unless nobody hears; nobody is to wait long without a window then.
    constexpr DWORD most = 2;
    if (waitForOne({turn.get(), instanceMutex}, limitMilliseconds * most) != 0) return false;
    const Turn mine(turn.get());
    ResetEvent(heard.get());
    const HandedText handed(text);
    return postUntilHeard(handed, heard.get(), limitMilliseconds);
}

void markReceiver(void* window) { SetPropW(static_cast<HWND>(window), receiverMark, static_cast<HANDLE>(window)); }

uint32_t instanceProcess() {
    const std::vector<HWND> all = receivers();
    DWORD process = 0;
    if (!all.empty()) GetWindowThreadProcessId(all.front(), &process);
    return process;
}

std::optional<std::string> takeHandedOver() {
    const Handle taking(CreateMutexW(nullptr, FALSE, takingName));
    const Handle heard(OpenEventW(EVENT_MODIFY_STATE, FALSE, heardName));
    // Whoever takes is done in no time. One that is held up must not hold this window up as well.
    constexpr DWORD longest = 2000;  // milliseconds
    if (taking.get() != nullptr && !waitForOne({taking.get()}, longest)) return std::nullopt;
    std::string text;
    if (auto* view = static_cast<wchar_t*>(MapSharedView(nullptr, mappingName, 0, false))) {
        // The text ends inside the view, whoever wrote it.
        text = fromWide(view, viewSize(view) / sizeof(wchar_t));
        *view = L'\0';
        UnmapViewOfFile(view);
    }
    if (taking.get() != nullptr) ReleaseMutex(taking.get());
    if (heard.get() != nullptr) SetEvent(heard.get());
    if (text.empty()) return std::nullopt;
    return text;
}

}  // namespace glimmer
