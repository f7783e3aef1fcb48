#include "common/surroundings.h"

#include <windows.h>

#include <atomic>

#include "common/library_module.h"
#include "common/system_library.h"

namespace glimmer {

namespace {

using SetContext = HANDLE(WINAPI*)(HANDLE);
using GetContext = HANDLE(WINAPI*)();

/// Answers what the thread had before, null when nothing was changed. There since version 1607 of Windows 10.
void* setThreadDpi(void* context) noexcept {
    static const auto set = systemFunction<SetContext>(L"user32.dll", "SetThreadDpiAwarenessContext");
    return set != nullptr && context != nullptr ? set(context) : nullptr;
}

/// Per monitor: version 2, or version 1 where the system knows only that one.
void* setThreadDpiToOurs() noexcept {
    // Handles with these values stand for the kinds of awareness.
    static void* const version1 = reinterpret_cast<void*>(static_cast<INT_PTR>(-3));
    // Of all threads: the host's and our own come here at the same time.
    static std::atomic<void*> ours = reinterpret_cast<void*>(static_cast<INT_PTR>(-4));
    void* const tried = ours;
    void* before = setThreadDpi(tried);
    if (before == nullptr && tried != version1) {
        ours = version1;
        before = setThreadDpi(version1);
    }
    return before;
}

/// A reference to an activation context. A library may come and go many times in a process and leaves none behind.
class ActivationContext {
public:
    ActivationContext() = default;
    ~ActivationContext() { set(nullptr); }
    ActivationContext(const ActivationContext&) = delete;
    ActivationContext& operator=(const ActivationContext&) = delete;
    ActivationContext(ActivationContext&&) = delete;
    ActivationContext& operator=(ActivationContext&&) = delete;

    /// Takes a reference over; null is the process's own context.
    void set(HANDLE context) {
        if (context_ != nullptr) ReleaseActCtx(context_);
        context_ = context;
    }
    /// To be undone with what this answers; 0 when that failed.
    [[nodiscard]] uintptr_t activate() const {
        ULONG_PTR cookie = 0;
        return ActivateActCtx(context_, &cookie) != FALSE ? cookie : 0;
    }

private:
    HANDLE context_ = nullptr;
};

/// The library's manifest has the number 2. A program that holds our code without it, as tests do, keeps its own.
ActivationContext& ownActivationContext() {
    static ActivationContext own;
    [[maybe_unused]] static const bool made = [] {
        ACTCTXW wanted{};
        wanted.cbSize = sizeof wanted;
        wanted.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
        wanted.hModule = static_cast<HMODULE>(libraryModule());
        wanted.lpResourceName = MAKEINTRESOURCEW(2);
        const HANDLE context = CreateActCtxW(&wanted);
        if (context != INVALID_HANDLE_VALUE) own.set(context);
        return context != INVALID_HANDLE_VALUE;
    }();
    return own;
}

ActivationContext& hostActivationContext() {
    static ActivationContext host;
    return host;
}

void* hostDpi = nullptr;

}  // namespace

OwnSurroundings::OwnSurroundings() noexcept : cookie_(ownActivationContext().activate()), dpi_(setThreadDpiToOurs()) {}

OwnSurroundings::~OwnSurroundings() {
    setThreadDpi(dpi_);
    if (cookie_ != 0) DeactivateActCtx(0, cookie_);
}

void HostSurroundings::remember() noexcept {
    HANDLE current = nullptr;
    hostActivationContext().set(GetCurrentActCtx(&current) != FALSE ? current : nullptr);
    static const auto get = systemFunction<GetContext>(L"user32.dll", "GetThreadDpiAwarenessContext");
    hostDpi = get != nullptr ? get() : nullptr;
}

HostSurroundings::HostSurroundings() noexcept
    : cookie_(hostActivationContext().activate()), dpi_(setThreadDpi(hostDpi)) {}

HostSurroundings::~HostSurroundings() {
    setThreadDpi(dpi_);
    if (cookie_ != 0) DeactivateActCtx(0, cookie_);
}

}  // namespace glimmer
