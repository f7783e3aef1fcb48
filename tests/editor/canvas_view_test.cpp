#include "editor/canvas/canvas_view.h"

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

// The largest zoom at which all is seen that is to be seen.
TEST(CanvasView, fitsThePageOrItsWidth) {
    constexpr int32_t bar = 17;
    const Size room{800, 600};
    for (const Size picture : {Size{800, 600}, Size{800, 601}, Size{1280, 10000}, Size{4000, 300}, Size{333, 777},
                               Size{16, 16}, Size{100000, 50}, Size{1, 100000}}) {
        for (const CanvasView::Fit fit : {CanvasView::Fit::Width, CanvasView::Fit::Page}) {
            SCOPED_TRACE(testing::Message()
                         << picture.width << " x " << picture.height << " " << static_cast<int>(fit));
            const int32_t zoom = CanvasView::fittingZoom(fit, picture, room, bar);
            const auto fits = [&](int32_t percent) {
                const Size all = viewOf(picture, room, percent).extent();
                const int32_t width = all.height > room.height ? room.width - bar : room.width;
                return fit == CanvasView::Fit::Page ? all.width <= room.width && all.height <= room.height
                                                    : all.width <= width;
            };
            EXPECT_TRUE(fits(zoom) || zoom == CanvasView::minZoom);
            const int32_t next = zoom < 200 ? zoom + 1 : zoom + 100;
            EXPECT_TRUE(zoom == CanvasView::maxZoom || !fits(next));
        }
    }
}

TEST(CanvasView, jumpsOverThePage) {
    using Jump = CanvasView::Jump;
    const struct {
        Jump jump;
        Point from, to;
    } cases[] = {{Jump::PageDown, {7, 0}, {7, 260}}, {Jump::PageDown, {7, 1600}, {7, 1700}},
                 {Jump::PageUp, {7, 300}, {7, 40}},  {Jump::PageUp, {7, 100}, {7, 0}},
                 {Jump::Top, {7, 900}, {7, 0}},      {Jump::Bottom, {7, 900}, {7, 1700}},
                 {Jump::TopLeft, {7, 900}, {0, 0}},  {Jump::BottomRight, {7, 900}, {600, 1700}}};
    for (const auto& c : cases) {
        CanvasView view = viewOf({1000, 2000}, {400, 300}, 100);
        view.scrollTo(c.from);
        EXPECT_EQ(view.jumped(c.jump, 40), c.to) << static_cast<int>(c.jump) << " from " << c.from.y;
    }
    EXPECT_EQ(viewOf({1000, 2000}, {400, 1}, 100).jumped(Jump::PageDown, 40), (Point{0, 1})) << "goes on for all that";
}

}  // namespace
}  // namespace glimmer
