#include "editor/canvas/view_painter.h"

#include <gtest/gtest.h>

#include <random>

#include "editor/canvas/working_picture.h"
#include "editor/commands/add_annotation.h"
#include "editor/commands/draw_operation.h"
#include "editor/painting/cairo_text_painter.h"
#include "support/pictures.h"

namespace glimmer {
namespace {

/// Opaque.
TBitmap noise(int32_t width, int32_t height, uint32_t seed) {
    return test::noise(width, height, PixelFormat::Bgr24, seed).converted(PixelFormat::Bgra32).take();
}

CanvasView viewOf(Size picture, Size window, int32_t zoom, Point scroll) {
    CanvasView view;
    view.setPictureSize(picture);
    view.setWindowSize(window);
    view.setZoom(zoom, {0, 0});
    view.scrollTo(scroll);
    return view;
}

CanvasOverlay everything(Size picture) {
    CanvasOverlay overlay;
    overlay.selection = Region::ellipse({10, 12, picture.width - 5, picture.height - 9});
    overlay.polyline = {{3, 3}, {40, 7}, {22, 50}};
    overlay.handles = {{10, 12}, {30, 30}};
    overlay.guides = {{true, 25}, {false, 31}};
    return overlay;
}

// What a scroll or a small change paints again fits what was there: any piece looks the same painted by itself, and
// nothing outside it is touched.
TEST(ViewPainter, paintsPiecesExactlyAsTheWholeAtEveryZoom) {
    const TBitmap picture = noise(90, 70, 1);
    std::mt19937 random(2);
    for (const int32_t zoom : {10, 33, 50, 99, 100, 125, 150, 200, 800}) {
        SCOPED_TRACE(zoom);
        const Size window{120, 100};
        const CanvasView view = viewOf(picture.size(), window, zoom, {17, 9});
        for (const CanvasOverlay& overlay : {CanvasOverlay{}, everything(picture.size())}) {
            TBitmap whole = noise(window.width, window.height, 3);
            paintView(whole, whole.bounds(), view, picture, overlay, {});
            for (int i = 0; i < 12; ++i) {
                const auto left = static_cast<int32_t>(random() % 110);
                const auto top = static_cast<int32_t>(random() % 90);
                const Rect clip{left, top, left + 1 + static_cast<int32_t>(random() % 60),
                                top + 1 + static_cast<int32_t>(random() % 60)};
                TBitmap piece = noise(window.width, window.height, 4);
                TBitmap expected = piece.clone().take();
                paintView(piece, clip, view, picture, overlay, {});
                copyPixels(expected, {clip.left, clip.top}, whole, clip.intersected(whole.bounds()));
                ASSERT_TRUE(samePixels(piece, expected)) << i;
            }
        }
    }
}

TEST(ViewPainter, showsWholePixelsAndTrueAverages) {
    TBitmap picture = TBitmap::create(40, 40, PixelFormat::Bgra32).take();
    for (int32_t y = 0; y < 40; ++y)
        for (int32_t x = 0; x < 40; ++x) picture.setPixel(x, y, (x + y) % 2 == 0 ? rgb(200, 100, 0) : rgb(0, 100, 250));
    TBitmap window = TBitmap::create(40, 40, PixelFormat::Bgra32).take();
    paintView(window, window.bounds(), viewOf({40, 40}, {40, 40}, 400, {40, 40}), picture, {}, {});
    for (int32_t y = 0; y < 40; ++y)
        for (int32_t x = 0; x < 40; ++x) ASSERT_EQ(window.pixel(x, y), picture.pixel(10 + x / 4, 10 + y / 4));
    CanvasLook look;
    paintView(window, window.bounds(), viewOf({40, 40}, {40, 40}, 50, {0, 0}), picture, {}, look);
    EXPECT_EQ(window.pixel(20, 20), rgb(100, 100, 125)) << "the mean of two of each";
    EXPECT_EQ(window.pixel(2, 2), look.desk);
    EXPECT_EQ(window.pixel(9, 20), look.border);
    // One pixel and a half of the picture: two thirds of the one, one third of the other.
    picture.fill(picture.bounds(), rgb(0, 0, 0));
    picture.fill({1, 0, 40, 40}, rgb(255, 255, 255));
    paintView(window, window.bounds(), viewOf({40, 40}, {40, 40}, 150, {0, 0}), picture, {}, look);
    EXPECT_EQ(window.pixel(0, 5), rgb(0, 0, 0));
    EXPECT_NEAR(redOf(window.pixel(1, 5)), 128, 1);
    EXPECT_EQ(window.pixel(2, 5), rgb(255, 255, 255));
}

TEST(WorkingPicture, isAfterAnyChangesTheSameAsPaintedAnew) {
    const auto capture = CaptureDocument::create(noise(200, 160, 9), {}).take();
    CairoTextPainter text;
    WorkingPicture working(*capture, text);
    const int observer = capture->observe([&](const DocumentChange& change) {
        if (change.size) working.invalidateAll();
        working.invalidate(change.area);
    });
    std::mt19937 random(1);
    const auto any = [&](int32_t high) { return static_cast<int32_t>(random() % static_cast<uint32_t>(high)); };
    for (int i = 0; i < 60; ++i) {
        if (i % 3 == 0) {
            TPixelOperation fill;
            fill.rectangle = {any(100), any(80), 100 + any(90), 80 + any(70)};
            fill.colour = rgb(1, 2, 3);
            ASSERT_TRUE(capture->run(std::make_unique<DrawOperation>(std::move(fill))));
        } else if (i % 3 == 1) {
            TBBShape shape(predefinedStyles()[static_cast<size_t>(any(5))], {any(100), any(80), 150, 120});
            shape.text.text = "label";
            fitLabel(shape, text);
            ASSERT_TRUE(capture->run(std::make_unique<AddAnnotation>(std::move(shape))));
        } else if (any(2) == 0) {
            ASSERT_TRUE(capture->undo());
        }
        ASSERT_TRUE(working.refresh({any(100), any(80), 100 + any(100), 80 + any(80)}));
    }
    ASSERT_TRUE(working.refresh(capture->background().bounds()));
    TBitmap anew = capture->background().clone().take();
    paintAnnotations(anew, anew.bounds(), capture->annotations(), text, {});
    EXPECT_TRUE(samePixels(working.bitmap(), anew));
    capture->forget(observer);
}

TEST(WorkingPicture, showsTransparencyOnAChequeredGround) {
    TBitmap clear = TBitmap::create(32, 32, PixelFormat::Bgra32).take();
    const auto capture = CaptureDocument::create(std::move(clear), {}).take();
    CairoTextPainter text;
    WorkingPicture working(*capture, text);
    ASSERT_TRUE(working.refresh({0, 0, 32, 32}));
    EXPECT_EQ(working.bitmap().pixel(1, 1), rgb(255, 255, 255));
    EXPECT_EQ(working.bitmap().pixel(9, 1), rgb(204, 204, 204));
    EXPECT_FALSE(working.bitmap().hasTransparency());
    EXPECT_TRUE(capture->background().hasTransparency()) << "the ground is the canvas's, not the picture's";
}

}  // namespace
}  // namespace glimmer
