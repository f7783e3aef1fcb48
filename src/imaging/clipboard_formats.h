#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "common/bitmap.h"

namespace glimmer {

inline constexpr uint32_t formatDib = 8;     ///< CF_DIB
inline constexpr uint32_t formatDibV5 = 17;  ///< CF_DIBV5

// Pictures as the clipboard carries them: a bitmap file without its file header, rows from the bottom.

/// CF_DIB: 24 bits, on white where the picture is transparent; what every program takes.
Result<std::vector<uint8_t>> clipboardDib(const TBitmap& picture);
/// CF_DIBV5: 32 bits with straight alpha, sRGB.
Result<std::vector<uint8_t>> clipboardDibV5(const TBitmap& picture);

/// The formats of pictures that can be read, best first, out of all that the clipboard offers in its order: `png` where
/// it is, since no system makes that up, then the bitmaps as they come. What a program has put there itself stands
/// before what the system makes of it.
std::vector<uint32_t> readingOrder(std::span<const uint32_t> offered, uint32_t png);

/// The picture of a CF_DIB or CF_DIBV5 that some program has put there.
Result<TBitmap> pictureFromDib(std::span<const uint8_t> dib);

}  // namespace glimmer
