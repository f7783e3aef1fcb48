#include "common/opened_clipboard.h"

#include <windows.h>

namespace glimmer {

namespace {

/// A window of this thread's, which the clipboard then belongs to: without one the system takes no data for granted,
/// and programs that keep what was copied cannot tell where it came from.
HWND owner() {
    static thread_local HWND window = nullptr;
    if (window == nullptr || IsWindow(window) == FALSE)
        window = CreateWindowExW(0, L"STATIC", L"Glimmerpad clipboard", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                                 nullptr);
    return window;
}

}  // namespace

OpenedClipboard::OpenedClipboard() {
    constexpr int attempts = 20;
    constexpr DWORD pause = 25;  // milliseconds
    for (int attempt = 0; attempt < attempts && !open_; ++attempt) {
        if (attempt > 0) Sleep(pause);
        open_ = OpenClipboard(owner()) != FALSE;
    }
}

OpenedClipboard::~OpenedClipboard() {
    if (open_) CloseClipboard();
}

}  // namespace glimmer
