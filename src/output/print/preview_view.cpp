#include "output/print/preview_view.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace glimmer {

namespace {

constexpr double leastSide = 0.1;  // inches; a handle is not dragged over to the other side

constexpr PreviewGrip handles[] = {PreviewGrip::TopLeft,    PreviewGrip::TopRight, PreviewGrip::BottomRight,
                                   PreviewGrip::BottomLeft, PreviewGrip::Top,      PreviewGrip::Right,
                                   PreviewGrip::Bottom,     PreviewGrip::Left};

/// Which way a handle pulls: -1, 0 or 1 across and down.
struct Pull {
    int across;
    int down;
};
Pull pullOf(PreviewGrip grip) {
    constexpr std::array<Pull, 10> pulls = {
        {{0, 0}, {0, 0}, {-1, -1}, {0, -1}, {1, -1}, {1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}}};
    return pulls[static_cast<size_t>(grip)];
}

/// The start of a length that comes near the area's edges or middle.
double snapped(double from, double length, double areaFrom, double areaTo, double snap) {
    const double wanted[] = {areaFrom, areaTo - length, (areaFrom + areaTo - length) / 2};
    double best = from;
    double nearest = snap;
    for (const double place : wanted) {
        if (std::abs(place - from) > nearest) continue;
        nearest = std::abs(place - from);
        best = place;
    }
    return best;
}

double snappedEdge(double edge, double areaFrom, double areaTo, double snap) {
    if (std::abs(edge - areaFrom) <= snap) return areaFrom;
    return std::abs(edge - areaTo) <= snap ? areaTo : edge;
}

}  // namespace

PreviewView PreviewView::fitted(Size window, const PrintPaper& paper, int32_t gap) {
    PreviewView view;
    view.scale =
        std::max(1.0, std::min((window.width - 2 * gap) / paper.width, (window.height - 2 * gap) / paper.height));
    view.origin = {static_cast<int32_t>((window.width - paper.width * view.scale) / 2),
                   static_cast<int32_t>((window.height - paper.height * view.scale) / 2)};
    return view;
}

Rect PreviewView::pixels(const InchRect& place) const {
    const auto x = [this](double inches) { return origin.x + static_cast<int32_t>(std::lround(inches * scale)); };
    const auto y = [this](double inches) { return origin.y + static_cast<int32_t>(std::lround(inches * scale)); };
    return {x(place.left), y(place.top), x(place.right), y(place.bottom)};
}

Point gripPoint(PreviewGrip grip, const Rect& box) {
    const Pull pull = pullOf(grip);
    const auto at = [](int32_t from, int32_t to, int side) {
        return side == 0 ? middle(from, to) : side < 0 ? from : to - 1;
    };
    return {at(box.left, box.right, pull.across), at(box.top, box.bottom, pull.down)};
}

PreviewGrip gripAt(Point point, const Rect& box, int32_t reach) {
    for (const PreviewGrip grip : handles) {
        const Point handle = gripPoint(grip, box);
        if (std::abs(handle.x - point.x) <= reach && std::abs(handle.y - point.y) <= reach) return grip;
    }
    return box.contains(point) ? PreviewGrip::Picture : PreviewGrip::None;
}

PreviewDrag::PreviewDrag(const PrintLayout& layout, PreviewGrip grip, const InchRect& shown, double x, double y)
    : grip_(grip), start_(layout.wishes().split ? shown : layout.place()), x_(x), y_(y) {}

void PreviewDrag::moveTo(PrintLayout& layout, double x, double y, bool free, double snap) const {
    if (grip_ == PreviewGrip::None) return;
    if (grip_ == PreviewGrip::Picture)
        move(layout, x - x_, y - y_, snap);
    else
        size(layout, x - x_, y - y_, free, snap);
}

void PreviewDrag::move(PrintLayout& layout, double dx, double dy, double snap) const {
    const InchRect area = layout.area();
    layout.setPlace(snapped(start_.left + dx, start_.width(), area.left, area.right, snap),
                    snapped(start_.top + dy, start_.height(), area.top, area.bottom, snap));
}

void PreviewDrag::size(PrintLayout& layout, double dx, double dy, bool free, double snap) const {
    const InchRect area = layout.area();
    const Pull pull = pullOf(grip_);
    InchRect to = start_;
    if (pull.across < 0)
        to.left = std::min(snappedEdge(to.left + dx, area.left, area.right, snap), to.right - leastSide);
    if (pull.across > 0)
        to.right = std::max(snappedEdge(to.right + dx, area.left, area.right, snap), to.left + leastSide);
    if (pull.down < 0) to.top = std::min(snappedEdge(to.top + dy, area.top, area.bottom, snap), to.bottom - leastSide);
    if (pull.down > 0)
        to.bottom = std::max(snappedEdge(to.bottom + dy, area.top, area.bottom, snap), to.top + leastSide);
    double width = to.width();
    double height = to.height();
    if (layout.wishes().split) {  // the shown sheet has only a part of the height
        layout.setWidth(pull.across != 0 ? width : start_.width() * height / start_.height());
    } else {
        if (!free) {
            // A corner follows whichever side was pulled further.
            const double byWidth = width / start_.width();
            const double byHeight = height / start_.height();
            const bool across = pull.down == 0 || (pull.across != 0 && std::abs(byWidth - 1) >= std::abs(byHeight - 1));
            const double factor = across ? byWidth : byHeight;
            width = start_.width() * factor;
            height = start_.height() * factor;
        }
        layout.setSize(width, height);
    }
    const InchRect made = layout.place();
    layout.setPlace(pull.across < 0 ? start_.right - made.width() : start_.left,
                    pull.down < 0 ? start_.bottom - made.height() : start_.top);
}

}  // namespace glimmer
