// Taking the screen: how two frames of a window that scrolls are matched.

#include "capture/scroll/scroll_join.h"
#include "harness.h"

namespace glimmer::bench {

void screen() {
    const Size view{1280, 1000};
    const TBitmap page =
        pagePicture("page.png", {view.width, 2400}, PixelFormat::Bgra32).converted(PixelFormat::Bgra32).take();
    const auto frame = [&](int32_t left, int32_t top) {
        TBitmap shown = TBitmap::create(view.width, view.height, PixelFormat::Bgra32).take();
        copyPixels(shown, {-left, -top}, page);
        return shown;
    };
    const TBitmap first = frame(0, 100);
    const TBitmap next = frame(0, 430);
    const TBitmap sideways = frame(24, 430);
    const ScrollFrame before(first);
    const std::vector<double> times = compare({
        {"moved", [&] { matchFrames(before, ScrollFrame(next)); }},
        {"sideways as well", [&] { matchFrames(before, ScrollFrame(sideways)); }},
        {"still", [&] { matchFrames(before, ScrollFrame(first)); }},
    });
    printTable("Matching two frames of 1280 x 1000", {"", "moved, ms", "sideways as well, ms", "still, ms"},
               {{"matching", milliseconds(times[0]), milliseconds(times[1]), milliseconds(times[2])}});
    goalAtMost("matching two frames of 1280 x 1000: milliseconds", times[0], 10);
}

}  // namespace glimmer::bench
