#include <limits>

#include "common/assertion.h"
#include "common/bytes.h"
#include "common/progress.h"
#include "imaging/bmp_codec.h"

namespace glimmer {

namespace {

constexpr uint32_t headerSize = 14 + 40;
constexpr int32_t pixelsPerMetre = 3780;  // 96 dots per inch

}  // namespace

Result<std::vector<uint8_t>> encodeBmp(const TBitmap& bitmap, const Progress& progress) {
    GLIMMER_ASSERT(bitmap.format() == PixelFormat::Bgr24, "24 bits", "bmp_writer");
    // Rows are padded alike in the file and in memory.
    const auto pixelBytes = static_cast<uint32_t>(bitmap.byteCount());
    ByteWriter header;
    header.u8('B');
    header.u8('M');
    header.u32(headerSize + pixelBytes);
    header.u32(0);
    header.u32(headerSize);
    header.u32(40);
    header.i32(bitmap.width());
    header.i32(bitmap.height());
    header.u32(1U | 24U << 16U);  // planes, bits
    header.u32(0);
    header.u32(pixelBytes);
    header.i32(pixelsPerMetre);
    header.i32(pixelsPerMetre);
    header.u32(0);
    header.u32(0);
    std::vector<uint8_t> file = header.take();
    file.reserve(headerSize + pixelBytes);
    for (int32_t y = bitmap.height() - 1; y >= 0; --y) {
        if (!proceed(progress, bitmap.height() - 1 - y, bitmap.height())) return cancelled();
        const size_t used = static_cast<size_t>(bitmap.width()) * 3;
        file.insert(file.end(), bitmap.row(y), bitmap.row(y) + used);
        file.resize(file.size() + bitmap.stride() - used, 0);
    }
    return file;
}

}  // namespace glimmer
