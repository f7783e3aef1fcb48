#include "editor/canvas/canvas_view.h"

#include <algorithm>
#include <array>

namespace glimmer {

namespace {

constexpr std::array<int32_t, 18> zoomSteps = {10,  15,  20,  25,  33,  50,  67,  75,  100,
                                               125, 150, 200, 300, 400, 500, 600, 700, 800};

/// Quotient rounded toward minus infinity; divisor > 0.
int64_t floorDivide(int64_t a, int64_t b) { return a >= 0 ? a / b : -((-a + b - 1) / b); }
int64_t ceilDivide(int64_t a, int64_t b) { return -floorDivide(-a, b); }
int32_t narrow(int64_t v) { return static_cast<int32_t>(std::clamp<int64_t>(v, INT32_MIN / 2, INT32_MAX / 2)); }

}  // namespace

int32_t CanvasView::validZoom(int32_t percent) {
    const int32_t inRange = std::clamp(percent, minZoom, maxZoom);
    return inRange < 200 ? inRange : inRange / 100 * 100;
}

int32_t CanvasView::fittingZoom(Fit fit, Size picture, Size room, int32_t bar) {
    // A length is rounded down on the screen: the largest per cent at which it is not longer than the room.
    const auto largest = [](int32_t length, int32_t room) {
        return narrow(((static_cast<int64_t>(std::max(1, room)) + 1) * 100 - 1) / std::max(1, length));
    };
    const int32_t across = validZoom(largest(picture.width, room.width));
    const int32_t down = validZoom(largest(picture.height, room.height));
    if (fit == Fit::Page) return std::min(across, down);
    // With a bar beside it, or so small that it needs none.
    return across <= down ? across : std::max(down, validZoom(largest(picture.width, room.width - bar)));
}

int32_t CanvasView::scaled(int32_t length) const {
    return narrow(std::max<int64_t>(length > 0 ? 1 : 0, static_cast<int64_t>(length) * zoom_ / 100));
}

Size CanvasView::extent() const { return {scaled(picture_.width), scaled(picture_.height)}; }

Point CanvasView::maxScroll() const {
    const Size all = extent();
    return {std::max(0, all.width - window_.width), std::max(0, all.height - window_.height)};
}

void CanvasView::scrollTo(Point position) {
    const Point limit = maxScroll();
    scroll_ = {std::clamp(position.x, 0, limit.x), std::clamp(position.y, 0, limit.y)};
}

Point CanvasView::jumped(Jump jump, int32_t kept) const {
    const Point last = maxScroll();
    const int32_t page = std::max(1, window_.height - std::min(kept, window_.height / 2));
    switch (jump) {
        case Jump::PageUp:
            return {scroll_.x, std::max(0, scroll_.y - page)};
        case Jump::PageDown:
            return {scroll_.x, std::min(last.y, scroll_.y + page)};
        case Jump::Top:
            return {scroll_.x, 0};
        case Jump::Bottom:
            return {scroll_.x, last.y};
        case Jump::TopLeft:
            return {0, 0};
        case Jump::BottomRight:
            return last;
    }
    return scroll_;
}

void CanvasView::setPictureSize(Size picture) {
    picture_ = picture;
    scrollTo(scroll_);
}

void CanvasView::setWindowSize(Size window) {
    window_ = window;
    scrollTo(scroll_);
}

void CanvasView::setZoom(int32_t percent, Point anchor) {
    const int32_t next = validZoom(percent);
    if (next == zoom_) return;
    // In device pixels of the old zoom, so that a point within a large pixel keeps its place too.
    const Point before = origin();
    const int64_t x = static_cast<int64_t>(anchor.x) - before.x;
    const int64_t y = static_cast<int64_t>(anchor.y) - before.y;
    const int32_t old = zoom_;
    zoom_ = next;
    scrollTo({narrow(floorDivide(x * next, old) - anchor.x), narrow(floorDivide(y * next, old) - anchor.y)});
}

void CanvasView::zoomIn(Point anchor) {
    const auto* step = std::upper_bound(zoomSteps.begin(), zoomSteps.end(), zoom_);
    if (step != zoomSteps.end()) setZoom(*step, anchor);
}

void CanvasView::zoomOut(Point anchor) {
    const auto* step = std::lower_bound(zoomSteps.begin(), zoomSteps.end(), zoom_);
    if (step != zoomSteps.begin()) setZoom(*(step - 1), anchor);
}

Point CanvasView::origin() const {
    const Size all = extent();
    return {all.width < window_.width ? (window_.width - all.width) / 2 : -scroll_.x,
            all.height < window_.height ? (window_.height - all.height) / 2 : -scroll_.y};
}

Point CanvasView::toPicture(Point view) const {
    const Point o = origin();
    return {narrow(floorDivide((static_cast<int64_t>(view.x) - o.x) * 100, zoom_)),
            narrow(floorDivide((static_cast<int64_t>(view.y) - o.y) * 100, zoom_))};
}

// Rounded up, so that toPicture(toView(p)) is p wherever a picture pixel has a device pixel of its own.
Point CanvasView::toView(Point picture) const {
    const Point o = origin();
    return {narrow(o.x + ceilDivide(static_cast<int64_t>(picture.x) * zoom_, 100)),
            narrow(o.y + ceilDivide(static_cast<int64_t>(picture.y) * zoom_, 100))};
}

Rect CanvasView::toView(const Rect& picture) const {
    const Point o = origin();
    return {narrow(o.x + floorDivide(static_cast<int64_t>(picture.left) * zoom_, 100)),
            narrow(o.y + floorDivide(static_cast<int64_t>(picture.top) * zoom_, 100)),
            narrow(o.x + ceilDivide(static_cast<int64_t>(picture.right) * zoom_, 100)),
            narrow(o.y + ceilDivide(static_cast<int64_t>(picture.bottom) * zoom_, 100))};
}

Rect CanvasView::toPicture(const Rect& view) const {
    const Point first = toPicture(Point{view.left, view.top});
    const Point last = toPicture(Point{view.right - 1, view.bottom - 1});
    return Rect{first.x, first.y, last.x + 1, last.y + 1}.intersected({0, 0, picture_.width, picture_.height});
}

Rect CanvasView::visible() const { return toPicture(Rect{0, 0, window_.width, window_.height}); }

int32_t CanvasView::lengthInPicture(int32_t devicePixels) const {
    return std::max(1, narrow(ceilDivide(static_cast<int64_t>(devicePixels) * 100, zoom_)));
}

bool CanvasView::scrollIntoView(const Rect& area) {
    const Rect in = toView(area);
    const Point before = scroll_;
    Point to = scroll_;
    if (in.right > window_.width) to.x += in.right - window_.width;
    if (in.left - (to.x - scroll_.x) < 0) to.x = scroll_.x + in.left;
    if (in.bottom > window_.height) to.y += in.bottom - window_.height;
    if (in.top - (to.y - scroll_.y) < 0) to.y = scroll_.y + in.top;
    scrollTo(to);
    return scroll_ != before;
}

}  // namespace glimmer
