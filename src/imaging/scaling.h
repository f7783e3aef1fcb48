#pragma once

#include "common/bitmap.h"

namespace glimmer {

/// The picture in a new size and its own format. Along a side that shrinks every new pixel is the average of the
/// area it stands for, nothing is left out; along a side that grows it is interpolated between its two neighbours.
/// Transparent pixels weigh by their alpha, so the colour below full transparency never shows. Fails on an empty
/// picture, a size below 1 or beyond the limits, and when memory cannot be had.
Result<TBitmap> resized(const TBitmap& picture, int32_t width, int32_t height);
/// The same of a part of the picture.
Result<TBitmap> resized(const TBitmap& picture, const Rect& part, int32_t width, int32_t height);

/// The largest size with the picture's proportions that fits into `within` and is not larger than the picture; each
/// side at least 1.
Size fittedSize(Size picture, Size within);

/// The picture reduced to fittedSize().
Result<TBitmap> thumbnail(const TBitmap& picture, Size within);

}  // namespace glimmer
