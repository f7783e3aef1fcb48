#include "host/own_capture.h"

#include "common/sound.h"
#include "output/uMainEditor.h"
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

class MainWindowAside {
public:
    MainWindowAside()
        : window_(pMainEditor != nullptr && pMainEditor->IsShown() && !pMainEditor->IsIconized() ? pMainEditor
                                                                                                 : nullptr) {
        if (window_ == nullptr) return;
        window_->Hide();
        letTheScreenSettle();
    }
    ~MainWindowAside() {
        if (window_ != nullptr && window_ == pMainEditor) window_->ShowWithoutActivating();
    }
    MainWindowAside(const MainWindowAside&) = delete;
    MainWindowAside& operator=(const MainWindowAside&) = delete;
    MainWindowAside(MainWindowAside&&) = delete;
    MainWindowAside& operator=(MainWindowAside&&) = delete;

private:
    TMainEditor* window_;
};

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

Result<TBitmap> takeWithMainWindowAside(const std::function<Result<TBitmap>()>& take) {
    const MainWindowAside aside;
    return take();
}

void announceCapture(const Rect& area) {
    if (OptionsHolder().on("chkPlayPhotoSound")) playSound(Sound::Capture);
    if (OptionsHolder().on("chkFlashlight")) flash(area);
}

}  // namespace glimmer
