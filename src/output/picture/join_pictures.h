#pragma once

#include <cstdint>
#include <span>

#include "common/bitmap.h"

namespace glimmer {

enum class JoinDirection : uint8_t { Horizontally, Vertically };

/// Space between pictures when nothing else was chosen, in pixels.
constexpr int32_t defaultJoinSpacing = 40;

/// One picture of several, in their order, side by side from the top or one below the other from the left, with
/// `spacing` pixels between neighbours. What no picture covers is white. 32 bits, opaque where the pictures are.
/// Fails on no picture, on a negative space, and when the sum is too large.
Result<TBitmap> joinPictures(std::span<const TBitmap* const> pictures,
                             JoinDirection direction = JoinDirection::Horizontally,
                             int32_t spacing = defaultJoinSpacing);

}  // namespace glimmer
