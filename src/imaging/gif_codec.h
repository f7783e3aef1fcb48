#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "common/bitmap.h"
#include "common/progress.h"
#include "common/result.h"

namespace glimmer {

/// Decodes the first frame of a GIF file to 32 bits, on the file's whole area: pixels outside the frame and those
/// of its transparent colour have alpha 0.
Result<TBitmap> readGif(std::span<const uint8_t> file);

/// Encodes a 24-bit bitmap with at most 256 colours (see Quantiser). Fails on pictures with more than 65535 pixels
/// on a side.
Result<std::vector<uint8_t>> encodeGif(const TBitmap& bitmap, const Progress& progress);

}  // namespace glimmer
