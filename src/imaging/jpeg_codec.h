#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "common/bitmap.h"
#include "common/progress.h"
#include "common/result.h"

namespace glimmer {

/// Decodes a JPEG file to 24 bits: grey, YCbCr, RGB, CMYK and YCCK (Adobe's inverted inks included), sequential,
/// progressive and arithmetic, turned and mirrored as its EXIF orientation says.
Result<TBitmap> readJpeg(std::span<const uint8_t> file);

/// Encodes a 24-bit bitmap; quality 1 to 100. From 90 on, colours are stored in full resolution, below that in half.
/// Fails on pictures with more than 65500 pixels on a side.
Result<std::vector<uint8_t>> encodeJpeg(const TBitmap& bitmap, int quality, const Progress& progress);

/// EXIF orientation, 1 to 8, from the data of a JPEG file's APP1 segment; 1 when it has none that can be read.
int exifOrientation(std::span<const uint8_t> segment);

/// The picture turned and mirrored so that one stored with that EXIF orientation stands upright.
Result<TBitmap> oriented(TBitmap bitmap, int orientation);

}  // namespace glimmer
