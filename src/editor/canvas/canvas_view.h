#pragma once

#include <cstdint>

#include "common/geometry.h"

namespace glimmer {

/// Where the picture lies in the window and how large it is shown: the one place that converts between picture
/// coordinates (image pixels) and view coordinates (device pixels, 0,0 is the window's top-left corner).
///
/// From 200 % on a picture pixel is a square of whole device pixels. A picture smaller than the window is centred,
/// a larger one is scrolled; the scroll position is kept in device pixels and always within the scroll range.
class CanvasView {
public:
    /// What an arrow key or a line of the wheel scrolls by, in device pixels.
    static constexpr int32_t scrollIncrement = 20;

    /// What is to be seen at once.
    enum class Fit : uint8_t { Width, Page };
    /// A way to go over the page with one key.
    enum class Jump : uint8_t { PageUp, PageDown, Top, Bottom, TopLeft, BottomRight };

    static constexpr int32_t minZoom = 10;   ///< per cent
    static constexpr int32_t maxZoom = 800;  ///< per cent

    void setPictureSize(Size picture);
    void setWindowSize(Size window);
    /// Sets the zoom in per cent, kept in range and, from 200 on, brought to a multiple of 100. The picture point
    /// under `anchor` (view coordinates) stays there as far as the scroll range allows.
    void setZoom(int32_t percent, Point anchor);
    /// The next larger or smaller step of the usual ones (10, 15, 20, 25, 33, 50, 67, 75, 100, 125, 150, 200, …).
    void zoomIn(Point anchor);
    void zoomOut(Point anchor);
    [[nodiscard]] int32_t zoom() const { return zoom_; }
    [[nodiscard]] static int32_t validZoom(int32_t percent);
    /// The largest zoom at which the picture's width, or all of it, is seen in a window of `room` device pixels; a
    /// scroll bar beside it takes `bar` of them where it is needed. The smallest zoom when none is small enough.
    [[nodiscard]] static int32_t fittingZoom(Fit fit, Size picture, Size room, int32_t bar);

    /// Extent of the whole picture in device pixels.
    [[nodiscard]] Size extent() const;
    [[nodiscard]] Point scroll() const { return scroll_; }
    [[nodiscard]] Point maxScroll() const;
    /// Sets the scroll position, brought into its range.
    void scrollTo(Point position);
    /// The scroll position that a key leads to, in its range. A page is the window's height but for `kept` device
    /// pixels, which are seen before and after; Top and Bottom stay in their column.
    [[nodiscard]] Point jumped(Jump jump, int32_t kept) const;
    /// Scrolls by the smallest way that shows `area` (picture coordinates); its top-left corner when it is larger
    /// than the window. Whether anything moved.
    bool scrollIntoView(const Rect& area);
    [[nodiscard]] Size window() const { return window_; }
    [[nodiscard]] Size picture() const { return picture_; }

    /// View position of the picture's top-left corner.
    [[nodiscard]] Point origin() const;
    /// The picture pixel under a view position; outside the picture it goes on with negative or larger numbers.
    [[nodiscard]] Point toPicture(Point view) const;
    /// View position of the top-left corner of a picture pixel.
    [[nodiscard]] Point toView(Point picture) const;
    /// The device pixels that a rectangle of picture pixels covers, at least in part.
    [[nodiscard]] Rect toView(const Rect& picture) const;
    /// The picture pixels, inside the picture, that show in a rectangle of device pixels.
    [[nodiscard]] Rect toPicture(const Rect& view) const;
    /// The picture pixels that the window shows.
    [[nodiscard]] Rect visible() const;
    /// A length in device pixels as a length in picture pixels, rounded up, at least 1.
    [[nodiscard]] int32_t lengthInPicture(int32_t devicePixels) const;

private:
    [[nodiscard]] int32_t scaled(int32_t length) const;

    Size picture_;
    Size window_;
    Point scroll_;
    int32_t zoom_ = 100;
};

}  // namespace glimmer
