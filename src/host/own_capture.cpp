#include "host/own_capture.h"

#include "capture/capture_options.h"
#include "common/sound.h"
#include "output/uMainEditor.h"
#include "settings/settings.h"
// After the toolkit's headers, which do not stand its names.
#include <windows.h>

namespace glimmer {

namespace {

BOOL CALLBACK paintNow(HWND window, LPARAM /*unused*/) {
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    return TRUE;
}

/// Windows of other programs only need a moment. Those of this thread cannot paint themselves while it is here, and
/// learn only from the queue that they have to.
void letTheScreenSettle() {
    constexpr DWORD repaintMilliseconds = 200;
    constexpr DWORD step = 20;
    for (DWORD waited = 0; waited < repaintMilliseconds; waited += step) {
        MSG message;
        PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_NOREMOVE);
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

}  // namespace

Result<TBitmap> takeWithMainWindowAside(const std::function<Result<TBitmap>()>& take) {
    const MainWindowAside aside;
    return take();
}

void playCaptureSound() {
    if (CaptureOptions::load(settings()).playSound) playSound(Sound::Capture);
}

}  // namespace glimmer
