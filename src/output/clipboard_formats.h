#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "common/bitmap.h"

namespace glimmer {

// Pictures as the clipboard carries them: a bitmap file without its file header, rows from the bottom.

/// CF_DIB: 24 bits, on white where the picture is transparent; what every program takes.
Result<std::vector<uint8_t>> clipboardDib(const TBitmap& picture);
/// CF_DIBV5: 32 bits with straight alpha, sRGB.
Result<std::vector<uint8_t>> clipboardDibV5(const TBitmap& picture);

/// The picture of a CF_DIB or CF_DIBV5 that some program has put there.
Result<TBitmap> pictureFromDib(std::span<const uint8_t> dib);

}  // namespace glimmer
