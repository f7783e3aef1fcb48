#include "capture/overlay/screen_capture.h"

#include <windows.h>

#include <charconv>
#include <utility>

#include "capture/overlay/countdown.h"
#include "capture/overlay/overlay_window.h"
#include "capture/own_capture.h"
#include "capture/screen_area.h"
#include "capture/window_grab.h"
#include "common/at_end.h"
#include "common/foreground.h"
#include "common/monitors.h"
#include "settings/options.h"

namespace glimmer {

namespace {

constexpr const char* lastAreaOption = "edtLastCaptureArea";
constexpr const char* hintOption = "chkShowCaptureHint";
constexpr const char* forbiddenNote =
    "A window in this area does not let itself be captured. It is black or missing in the picture.";

bool layered() { return !OptionsHolder().on("chkDontGrabOverlays"); }

/// "LEFT,TOP,RIGHT,BOTTOM".
std::string areaText(const Rect& area) {
    return std::to_string(area.left) + ',' + std::to_string(area.top) + ',' + std::to_string(area.right) + ',' +
           std::to_string(area.bottom);
}

std::optional<Rect> areaOf(const std::string& text) {
    int32_t sides[4] = {};
    const char* at = text.data();
    const char* const end = at + text.size();
    for (int32_t& side : sides) {
        const auto read = std::from_chars(at, end, side);
        if (read.ec != std::errc()) return std::nullopt;
        at = read.ptr != end ? read.ptr + 1 : end;
    }
    return Rect{sides[0], sides[1], sides[2], sides[3]};
}

void rememberArea(const Rect& area) {
    if (OptionsHolder().text(lastAreaOption) == areaText(area)) return;
    OptionsHolder().setText(lastAreaOption, areaText(area));
    saveOptions();
}

/// The pointer as an object of its own, where the options want it.
void addPointer(ScreenPicture& taken) {
    if (OptionsHolder().on("chkAddMouseCursor")) taken.pointer = visibleMouseCursor();
}

/// From the screen's pixels to the picture's.
void movePointer(ScreenPicture& taken, const Rect& area) {
    if (taken.pointer) taken.pointer->at = {taken.pointer->at.x - area.left, taken.pointer->at.y - area.top};
}

Result<std::optional<TakenCapture>> takeArea(const Rect& area) {
    TakenCapture taken;
    taken.area = area;
    Result<TBitmap> picture = takeWithoutOwnWindows([&] {
        addPointer(taken.screen);
        return grabScreen(area, layered());
    });
    if (!picture) return picture.failure();
    taken.screen.picture = picture.take();
    if (WindowTree().forbidden(area)) taken.note = forbiddenNote;
    return std::optional(std::move(taken));
}

Result<std::optional<TakenCapture>> takeWindow(bool client) {
    TakenCapture taken;
    Result<TBitmap> picture = takeWithoutOwnWindows([&]() -> Result<TBitmap> {
        void* window = windowInFront();
        if (window == nullptr) return Failure{"There is no window to take a picture of."};
        taken.title = windowTitle(window);
        taken.area = client ? clientFrame(window) : visibleFrame(window);
        if (!client) addPointer(taken.screen);
        return client ? grabClientArea(window) : grabWindow(window);
    });
    if (!picture) return picture.failure();
    taken.screen.picture = picture.take();
    return std::optional(std::move(taken));
}

Rect monitorUnderPointer() {
    POINT pointer{};
    GetCursorPos(&pointer);
    for (const Monitor& monitor : monitors())
        if (monitor.bounds.contains({pointer.x, pointer.y})) return monitor.bounds;
    return wholeScreen();
}

OverlayOptions overlayOptions() {
    OverlayOptions options;
    options.adjusts = OptionsHolder().on("chkAdjustArea");
    options.hint = OptionsHolder().on(hintOption);
    options.hintSwitched = [](bool on) {
        OptionsHolder().setOn(hintOption, on);
        saveOptions();
    };
    return options;
}

Result<std::optional<TakenCapture>> takeRegion() {
    if (overlayOpen()) return std::optional<TakenCapture>();
    const Rect screen = wholeScreen();
    TakenCapture taken;
    std::optional<WindowTree> windows;
    HWND const front = GetForegroundWindow();
    const Result<TBitmap> frozen = takeWithoutOwnWindows([&] {
        addPointer(taken.screen);
        windows.emplace();
        return grabScreen(screen, layered());
    });
    if (!frozen) return frozen.failure();
    const Result<std::optional<OverlayChoice>> chosen =
        chooseArea(*frozen, {screen.left, screen.top}, *windows, overlayOptions());
    if (front != nullptr && IsWindow(front) != FALSE) SetForegroundWindow(front);
    if (!chosen) return chosen.failure();
    if (!*chosen) return std::optional<TakenCapture>();
    taken.area = (*chosen)->area;
    taken.title = windowTitle((*chosen)->window);
    Result<TBitmap> picture = frozen->cropped(taken.area.moved(-screen.left, -screen.top));
    if (!picture) return picture.failure();
    taken.screen.picture = picture.take();
    if (windows->forbidden(taken.area)) taken.note = forbiddenNote;
    // Who has taken one knows how.
    if (OptionsHolder().on(hintOption)) {
        OptionsHolder().setOn(hintOption, false);
        saveOptions();
    }
    return std::optional(std::move(taken));
}

Result<std::optional<TakenCapture>> takeLast() {
    const std::optional<Rect> last = areaOf(OptionsHolder().text(lastAreaOption));
    // Monitors come and go.
    const Rect area = last ? last->intersected(wholeScreen()) : Rect{};
    if (area.empty()) return takeRegion();
    return takeArea(area);
}

Result<std::optional<TakenCapture>> take(CaptureKind kind) {
    switch (kind) {
        case CaptureKind::Window:
            return takeWindow(false);
        case CaptureKind::Client:
            return takeWindow(true);
        case CaptureKind::Monitor:
            return takeArea(monitorUnderPointer());
        case CaptureKind::Desktop:
            return takeArea(wholeScreen());
        case CaptureKind::Last:
            return takeLast();
        case CaptureKind::Region:
        default:
            return takeRegion();
    }
}

}  // namespace

Result<std::optional<TakenCapture>> takeCapture(const CaptureRequest& request) {
    if (!countDown(request.delay)) return std::optional<TakenCapture>();
    Result<std::optional<TakenCapture>> taken = take(request.kind);
    if (!taken || !*taken) return taken;
    TakenCapture& capture = **taken;
    movePointer(capture.screen, capture.area);
    rememberArea(capture.area);
    announceCapture(capture.area);
    return taken;
}

}  // namespace glimmer
