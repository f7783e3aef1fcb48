#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "common/bitmap.h"
#include "common/progress.h"
#include "common/result.h"

namespace glimmer {

/// Decodes a Windows or OS/2 bitmap file: 1, 4, 8, 16, 24 or 32 bits, run-length coded (4 and 8 bits), with bit
/// fields, either way up. The bitmap has 32 bits when the file declares an alpha field that is used, else 24.
Result<TBitmap> readBmp(std::span<const uint8_t> file);

/// Encodes a 24-bit bitmap as a Windows bitmap file of 24 bits, bottom row first.
Result<std::vector<uint8_t>> encodeBmp(const TBitmap& bitmap, const Progress& progress);

}  // namespace glimmer
