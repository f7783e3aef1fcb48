#pragma once

#include <cstdint>

#include "output/print/print_layout.h"

namespace glimmer {

/// How a sheet lies in a preview: pixels an inch, and the pixel of the sheet's upper left corner.
struct PreviewView {
    double scale = 1;
    Point origin;

    /// The whole sheet in the middle of a window of that size.
    static PreviewView fitted(Size window, const PrintPaper& paper, int32_t gap);
    [[nodiscard]] Rect pixels(const InchRect& place) const;
    [[nodiscard]] double across(int32_t x) const { return (x - origin.x) / scale; }
    [[nodiscard]] double down(int32_t y) const { return (y - origin.y) / scale; }
};

/// What of the picture the mouse can take hold of; the handles go around it.
enum class PreviewGrip : uint8_t {
    None,
    Picture,
    TopLeft,
    Top,
    TopRight,
    Right,
    BottomRight,
    Bottom,
    BottomLeft,
    Left,
};

/// The middle of a handle on a rectangle.
Point gripPoint(PreviewGrip grip, const Rect& box);
/// What is at a point; a handle reaches `reach` pixels to each side and goes before the picture.
PreviewGrip gripAt(Point point, const Rect& box, int32_t reach);

/// One drag with the mouse. Moving ends centring, sizing ends fitting. The side or corner opposite to a handle stays
/// where it is.
class PreviewDrag {
public:
    PreviewDrag(const PrintLayout& layout, PreviewGrip grip, const InchRect& shown, double x, double y);

    /// The pointer is there now (inches on the sheet). `free`: the proportions may change. What comes nearer than
    /// `snap` inches to the area's edges, or with its middle to the area's, goes there.
    void moveTo(PrintLayout& layout, double x, double y, bool free, double snap) const;

private:
    void move(PrintLayout& layout, double dx, double dy, double snap) const;
    void size(PrintLayout& layout, double dx, double dy, bool free, double snap) const;

    PreviewGrip grip_;
    InchRect start_;
    double x_;
    double y_;
};

}  // namespace glimmer
