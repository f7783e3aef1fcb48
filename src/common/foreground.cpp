#include "common/foreground.h"

#include <windows.h>

namespace glimmer {

namespace {

/// The window in front, if it is another process's.
HWND foreignForeground() {
    const HWND front = GetForegroundWindow();
    DWORD process = 0;
    GetWindowThreadProcessId(front, &process);
    return front != nullptr && process != GetCurrentProcessId() ? front : nullptr;
}

/// A thread that shares its input with the one in front may take the foreground. Never with one that hangs: this one
/// would hang with it.
void takeFrom(HWND front, HWND window) {
    const DWORD other = GetWindowThreadProcessId(front, nullptr);
    if (IsHungAppWindow(front) != FALSE || AttachThreadInput(GetCurrentThreadId(), other, TRUE) == FALSE) return;
    SetForegroundWindow(window);
    AttachThreadInput(GetCurrentThreadId(), other, FALSE);
}

void comeAbove(HWND window) {
    constexpr UINT inPlace = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;
    if ((GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) == 0) {
        SetWindowPos(window, HWND_TOPMOST, 0, 0, 0, 0, inPlace);
        SetWindowPos(window, HWND_NOTOPMOST, 0, 0, 0, 0, inPlace);
    }
    FLASHWINFO flash{sizeof flash, window, FLASHW_ALL | FLASHW_TIMERNOFG, 0, 0};
    FlashWindowEx(&flash);
}

}  // namespace

void takeForeground(void* handle) {
    const auto window = static_cast<HWND>(handle);
    SetForegroundWindow(window);
    if (const HWND front = foreignForeground()) takeFrom(front, window);
    if (foreignForeground() != nullptr) comeAbove(window);
    SetActiveWindow(window);
}

}  // namespace glimmer
