#include "capture/screen_picture.h"

#include "capture/memory_guard.h"
#include "capture/own_capture.h"
#include "capture/screen_area.h"
#include "settings/options.h"

namespace glimmer {

Rect chosenScreenArea() { return captureArea(OptionsHolder().number("spnSelectedCaptureSource")); }

Result<ScreenPicture> takeScreenPicture(const Rect& area) {
    ScreenPicture taken;
    if (!OptionsHolder().on("chkStartFromScreen")) {
        Result<TBitmap> page = TBitmap::create(area.width(), area.height(), PixelFormat::Bgra32);
        if (!page) return Failure{noRoomForEditorText()};
        page->fill(page->bounds(), rgb(255, 255, 255));
        taken.picture = page.take();
        return taken;
    }
    Result<TBitmap> picture = takeWithoutOwnWindows([&area, &taken] {
        if (OptionsHolder().on("chkAddMouseCursor")) taken.pointer = visibleMouseCursor();
        return grabScreen(area, !OptionsHolder().on("chkDontGrabOverlays"));
    });
    if (!picture) return picture.failure();
    announceCapture(area);
    taken.picture = picture.take();
    if (taken.pointer) taken.pointer->at = {taken.pointer->at.x - area.left, taken.pointer->at.y - area.top};
    return taken;
}

}  // namespace glimmer
