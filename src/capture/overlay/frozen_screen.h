#pragma once

#include "capture/drawing_surface.h"
#include "common/bitmap.h"
#include "common/geometry.h"

namespace glimmer {

/// The screen as it was taken, as it is and darkened, ready to be drawn from.
class FrozenScreen {
public:
    /// `picture`: Bgra32; its top left pixel is at `origin` of the whole screen. It must outlive this.
    static Result<FrozenScreen> create(const TBitmap& picture, Point origin);

    [[nodiscard]] const TBitmap& picture() const { return *picture_; }
    [[nodiscard]] Point origin() const { return origin_; }
    [[nodiscard]] Rect area() const { return picture_->bounds().moved(origin_.x, origin_.y); }
    /// Device contexts (HDC) with all of it.
    [[nodiscard]] void* bright() const { return bright_.deviceContext(); }
    [[nodiscard]] void* dark() const { return dark_.deviceContext(); }

private:
    FrozenScreen(const TBitmap& picture, Point origin, DrawingSurface bright, DrawingSurface dark);
    const TBitmap* picture_;
    Point origin_;
    DrawingSurface bright_;
    DrawingSurface dark_;
};

}  // namespace glimmer
