#include "editor/canvas_view.h"

#include <gtest/gtest.h>

namespace glimmer {
namespace {

CanvasView viewOf(Size picture, Size window, int32_t zoom) {
    CanvasView view;
    view.setPictureSize(picture);
    view.setWindowSize(window);
    view.setZoom(zoom, {0, 0});
    return view;
}

TEST(CanvasView, keepsZoomInRangeAndWholeFromTwoHundred) {
    const struct {
        int32_t asked, given;
    } cases[] = {{-5, 10}, {9, 10}, {10, 10}, {133, 133}, {199, 199}, {200, 200}, {250, 200}, {799, 700}, {900, 800}};
    for (const auto& c : cases) EXPECT_EQ(CanvasView::validZoom(c.asked), c.given) << c.asked;
    CanvasView view = viewOf({100, 100}, {50, 50}, 100);
    int steps = 0;
    for (int32_t last = 0; view.zoom() != last; ++steps) {
        last = view.zoom();
        view.zoomIn({0, 0});
    }
    EXPECT_EQ(view.zoom(), 800);
    for (int32_t last = 0; view.zoom() != last;) {
        last = view.zoom();
        view.zoomOut({0, 0});
    }
    EXPECT_EQ(view.zoom(), 10);
}

// Every device pixel belongs to one picture pixel, and a picture pixel's rectangle holds the device pixels that show
// it: at all zooms, scrolled and centred.
TEST(CanvasView, convertsBothWaysWithoutGapsAtEveryZoom) {
    for (const int32_t zoom : {10, 33, 50, 67, 100, 125, 150, 199, 200, 300, 800}) {
        for (const Size window : {Size{40, 30}, Size{4000, 3000}}) {
            CanvasView view = viewOf({57, 91}, window, zoom);
            view.scrollTo({13, 29});
            SCOPED_TRACE(zoom);
            for (int32_t x = 0; x < view.extent().width; ++x) {
                const Point device{view.origin().x + x, view.origin().y};
                const Point picture = view.toPicture(device);
                ASSERT_GE(picture.x, 0);
                ASSERT_LT(picture.x, 57);
                const Rect cover = view.toView(Rect{picture.x, picture.y, picture.x + 1, picture.y + 1});
                ASSERT_TRUE(cover.contains(device)) << x;
                if (zoom >= 200) {
                    ASSERT_EQ(cover.width(), zoom / 100);
                }
            }
            for (int32_t x = -3; zoom >= 100 && x < 60; ++x) {
                ASSERT_EQ(view.toPicture(view.toView(Point{x, x})), (Point{x, x}));
            }
        }
    }
}

TEST(CanvasView, zoomKeepsThePointUnderTheMouse) {
    for (const int32_t zoom : {50, 150, 400, 800}) {
        CanvasView view = viewOf({5000, 5000}, {500, 400}, 100);
        view.scrollTo({1000, 2000});
        const Point under = view.toPicture(Point{123, 77});
        view.setZoom(zoom, {123, 77});
        const Point after = view.toPicture(Point{123, 77});
        EXPECT_NEAR(after.x, under.x, 1) << zoom;
        EXPECT_NEAR(after.y, under.y, 1) << zoom;
    }
}

TEST(CanvasView, scrollsNoFartherThanThePictureAndOnlyAsFarAsNeeded) {
    CanvasView view = viewOf({1000, 800}, {300, 200}, 100);
    view.scrollTo({-5, 9999});
    EXPECT_EQ(view.scroll(), (Point{0, 600}));
    EXPECT_FALSE(view.scrollIntoView({10, 650, 20, 700}));
    EXPECT_TRUE(view.scrollIntoView({500, 590, 520, 600}));
    EXPECT_EQ(view.scroll(), (Point{220, 590}));
    EXPECT_TRUE(view.scrollIntoView({100, 0, 900, 700})) << "larger than the window: its corner";
    EXPECT_EQ(view.scroll(), (Point{100, 0}));
    view.setWindowSize({2000, 200});
    EXPECT_EQ(view.origin().x, 500) << "centred where it fits";
    EXPECT_EQ(view.visible(), (Rect{0, 0, 1000, 200}));
}

}  // namespace
}  // namespace glimmer
