#pragma once

#include <cstddef>
#include <cstdint>

#include "common/bitmap.h"

namespace glimmer {

/// Replaces each pixel of a 32-bit picture by its grey value, the integer part of
/// 0.11 x red + 0.59 x green + 0.3 x blue (red and blue have each other's usual weight, on purpose), and its fourth
/// byte by 0.
void grayscale(TBitmap& bitmap);

/// Inverts the colours of a 32-bit picture; every fourth byte becomes 255.
void invert(TBitmap& bitmap);

/// Lays a quarter of light grey (0xC0C0C0) over the odd rows and a quarter of black over the even ones, counted from
/// the top at 0. What it gives are the bytes of the system's AlphaBlend with a constant alpha of 64; the fourth byte
/// of a 32-bit picture stays.
void interlace(TBitmap& bitmap);

/// Takes the colours of `source` and keeps the fourth bytes. Both are 32-bit pictures of one size.
void takeColours(TBitmap& bitmap, const TBitmap& source);

}  // namespace glimmer
