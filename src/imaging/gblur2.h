#pragma once

#include "common/bitmap.h"
#include "common/result.h"
#include "imaging/gaussian_kernel.h"

namespace glimmer {

/// Blurs the picture in place: every row, then every column, each channel by itself. Beyond the edges the edge pixels
/// repeat. After each of the two passes the sums are truncated to bytes. A radius of 0 or less, or none (NaN), leaves
/// the picture alone.
/// Throws std::invalid_argument on anything but a 24-bit picture.
void GBlur(TBitmap& bitmap, double radius);

/// Writes a sharpened copy of `source` into `destination`, which takes its size; both become 24-bit pictures. The
/// outermost pixels are copied. `alpha`, above 1 and below 6, says how strongly. Pictures below 3 x 3 and an alpha out
/// of range are assertion failures. Fails when memory cannot be had.
Status Sharpen(TBitmap& source, TBitmap& destination, float alpha);

}  // namespace glimmer
