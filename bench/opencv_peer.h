#pragma once

#include "common/bitmap.h"

namespace glimmer::bench {

/// OpenCV's Gaussian blur of a 24-bit picture, on one thread: the same standard deviation and number of taps, edge
/// pixels repeated, into a picture of the same size that exists already.
void opencvBlur(const TBitmap& from, TBitmap& to, double radius, int kernelSize);

}  // namespace glimmer::bench
