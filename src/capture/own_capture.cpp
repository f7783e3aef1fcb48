#include "capture/own_capture.h"

#include <wx/toplevel.h>

#include <vector>

#include "capture/compositor.h"
#include "capture/window_grab.h"
#include "common/boundary.h"
#include "common/foreground.h"
#include "common/sound.h"
#include "settings/options.h"
// After the toolkit's headers, which do not stand its names.
#include <windows.h>

namespace glimmer {

namespace {

BOOL CALLBACK paintNow(HWND window, LPARAM /*unused*/) {
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    return TRUE;
}

/// Takes none. But only a thread that looks learns what its windows have to paint, and what they have painted may wait
/// for this moment until it is brought to the screen.
void lookForMessages() {
    MSG message;
    PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_NOREMOVE);
}

/// Windows of other programs only need a moment. Those of this thread cannot paint themselves while it is here.
void letTheScreenSettle() {
    constexpr DWORD repaintMilliseconds = 200;
    constexpr DWORD step = 20;
    for (DWORD waited = 0; waited < repaintMilliseconds; waited += step) {
        lookForMessages();
        EnumThreadWindows(GetCurrentThreadId(), paintNow, 0);
        Sleep(step);
    }
    GdiFlush();
}

ULONGLONG fadedAt = 0;  // of GetTickCount64()

/// Whether one of the system's windows for hidden icons is still on its way out.
bool iconsShown() {
    for (const wchar_t* name : {L"TopLevelWindowForOverflowXamlIsland", L"NotifyIconOverflowWindow"}) {
        HWND window = FindWindowW(name, nullptr);
        if (window != nullptr && IsWindowVisible(window) != FALSE && !compositor().cloaked(window)) return true;
    }
    return false;
}

void awaitFading() {
    if (fadedAt == 0) return;
    constexpr ULONGLONG patience = 1000;  // milliseconds, for icons that somebody keeps open
    constexpr DWORD step = 20;
    for (ULONGLONG now = GetTickCount64(); now < fadedAt || (iconsShown() && now < fadedAt + patience);
         now = GetTickCount64()) {
        lookForMessages();
        Sleep(step);
    }
    fadedAt = 0;
    compositor().awaitScreen();
}

/// A window of the program, or one that hangs on it: a dialog of the system, a hint.
bool isOurs(HWND window) {
    for (HWND owner = window; owner != nullptr; owner = GetWindow(owner, GW_OWNER))
        for (const wxWindow* top : wxTopLevelWindows)
            if (owner == static_cast<HWND>(top->GetHandle())) return true;
    return false;
}

BOOL CALLBACK collectOurs(HWND window, LPARAM list) {
    return guarded(FALSE, [=] {
        if (IsWindowVisible(window) != FALSE && IsIconic(window) == FALSE && isOurs(window))
            reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
        return TRUE;
    });
}

/// Keeps the program's windows out of the picture for its lifetime: the system leaves them out where it can, and the
/// user sees nothing of it; else they are hidden.
class OwnWindowsAside {
public:
    OwnWindowsAside() = default;
    ~OwnWindowsAside() { putBack(); }
    OwnWindowsAside(const OwnWindowsAside&) = delete;
    OwnWindowsAside& operator=(const OwnWindowsAside&) = delete;
    OwnWindowsAside(OwnWindowsAside&&) = delete;
    OwnWindowsAside& operator=(OwnWindowsAside&&) = delete;

    void putAside() {
        std::vector<HWND> all;
        EnumThreadWindows(GetCurrentThreadId(), collectOurs, reinterpret_cast<LPARAM>(&all));
        if (all.empty()) return;
        leftOut_.reserve(all.size());
        hidden_.reserve(all.size());
        const HWND front = GetForegroundWindow();
        for (HWND window : all) {
            if (compositor().leaveOut(window, true)) {
                leftOut_.push_back(window);
                continue;
            }
            hidden_.push_back(window);
            if (window == front) front_ = front;
            compositor().setTransitions(window, false);
            ShowWindow(window, SW_HIDE);
        }
        fadedAt = 0;  // what was hidden here goes at once
        compositor().awaitScreen();
        if (!hidden_.empty()) letTheScreenSettle();
    }

private:
    /// Some may be gone: the end of the session, or of the host, does not wait for a picture.
    void putBack() {
        for (HWND window : leftOut_)
            if (IsWindow(window) != FALSE) compositor().leaveOut(window, false);
        for (auto window = hidden_.rbegin(); window != hidden_.rend(); ++window) {
            if (IsWindow(*window) == FALSE) continue;
            ShowWindow(*window, SW_SHOWNA);
            compositor().setTransitions(*window, true);
        }
        if (front_ != nullptr && IsWindow(front_) != FALSE) takeForeground(front_);
    }

    std::vector<HWND> leftOut_;
    std::vector<HWND> hidden_;  // from the top down
    HWND front_ = nullptr;      // of the hidden ones
};

/// The uppermost window that is not the program's and that a person would call one.
BOOL CALLBACK lookForFront(HWND window, LPARAM found) {
    return guarded(FALSE, [=] {
        const LONG style = GetWindowLongW(window, GWL_EXSTYLE);
        if (IsWindowVisible(window) == FALSE || IsIconic(window) != FALSE ||
            (style & (WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE)) != 0 || visibleFrame(window).empty() || isOurs(window) ||
            compositor().cloaked(window))
            return TRUE;
        *reinterpret_cast<HWND*>(found) = window;
        return FALSE;
    });
}

/// White light that fades within a sixth of a second. It takes neither the mouse nor the focus.
void flash(const Rect& area) {
    HWND light = CreateWindowExW(
        WS_EX_LAYERED | WS_EX_TRANSPARENT | WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, L"STATIC", L"",
        WS_POPUP | SS_WHITERECT, area.left, area.top, area.width(), area.height(), nullptr, nullptr, nullptr, nullptr);
    if (light == nullptr) return;
    constexpr int steps = 8;
    constexpr DWORD stepMilliseconds = 20;
    constexpr int brightest = 200;
    for (int step = 0; step < steps; ++step) {
        SetLayeredWindowAttributes(light, 0, static_cast<BYTE>(brightest * (steps - step) / steps), LWA_ALPHA);
        if (step == 0) ShowWindow(light, SW_SHOWNOACTIVATE);
        UpdateWindow(light);
        lookForMessages();
        Sleep(stepMilliseconds);
    }
    DestroyWindow(light);
}

}  // namespace

void awaitGone(void* window) {
    compositor().setTransitions(window, false);
    ShowWindow(static_cast<HWND>(window), SW_HIDE);
    compositor().awaitScreen();
    letTheScreenSettle();
}

void expectFading() {
    constexpr ULONGLONG fadeMilliseconds = 400;
    fadedAt = GetTickCount64() + fadeMilliseconds;
}

Result<TBitmap> takeWithoutOwnWindows(const std::function<Result<TBitmap>()>& take) {
    awaitFading();
    OwnWindowsAside aside;
    aside.putAside();
    return take();
}

void* windowInFront() {
    HWND window = GetForegroundWindow();
    if (window != nullptr && !isOurs(window)) return window;
    window = nullptr;
    EnumWindows(lookForFront, reinterpret_cast<LPARAM>(&window));
    return window;
}

void announceCapture(const Rect& area) {
    if (OptionsHolder().on("chkPlayPhotoSound")) playSound(Sound::Capture);
    if (OptionsHolder().on("chkFlashlight")) flash(area);
}

}  // namespace glimmer
