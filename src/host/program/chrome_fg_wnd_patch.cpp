#include "host/program/chrome_fg_wnd_patch.h"

#include <windows.h>

#include "common/library_module.h"

namespace glimmer {

namespace {
constexpr wchar_t windowClassName[] = L"TChromeFGWndPatch";
constexpr int side = 100;        // pixels; any size serves
constexpr int faraway = -10000;  // beyond every monitor
}  // namespace

TChromeFGWndPatch::TChromeFGWndPatch() {
    const auto instance = static_cast<HINSTANCE>(libraryModule());
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = windowClassName;
    RegisterClassW(&windowClass);  // fails harmlessly from the second time on
    window_ = CreateWindowExW(WS_EX_TOOLWINDOW, windowClassName, L"", WS_POPUP, 0, 0, side, side, nullptr, nullptr,
                              instance, nullptr);
}

TChromeFGWndPatch::~TChromeFGWndPatch() {
    if (window_ != nullptr) DestroyWindow(static_cast<HWND>(window_));
}

void TChromeFGWndPatch::moveAway() {
    if (window_ == nullptr) return;
    SetWindowPos(static_cast<HWND>(window_), HWND_TOP, faraway, faraway, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE);
}

}  // namespace glimmer
