#pragma once

#include "common/bitmap.h"
#include "common/region.h"

namespace glimmer {

/// How far a glow reaches beyond its region, in pixels; its picture is that much larger on every side.
constexpr int32_t glowMargin = 20;

/// The part of the picture around `region` with a glow in `colour`: full beside the region's outline, fading outwards
/// to nothing at glowMargin. The result covers region.bounds() and glowMargin pixels more on every side; pixels inside
/// the region and those that the glow does not reach are the picture's own. What lies outside the picture means
/// nothing. Fails when the region is empty or memory cannot be had.
Result<TBitmap> glow(const TBitmap& picture, const Region& region, Colour colour);

}  // namespace glimmer
