#include <cstring>

#include "imaging/jpeg_codec.h"

namespace glimmer {

namespace {

/// Integers of a TIFF block in its own byte order; what lies outside is 0.
class TiffReader {
public:
    explicit TiffReader(std::span<const uint8_t> data) : data_(data) {}
    bool open() {
        if (data_.size() < 8) return false;
        big_ = data_[0] == 'M' && data_[1] == 'M';
        if (!big_ && !(data_[0] == 'I' && data_[1] == 'I')) return false;
        return u16(2) == 42;
    }
    [[nodiscard]] uint32_t u16(size_t at) const {
        if (at > data_.size() || data_.size() - at < 2) return 0;
        const uint32_t first = data_[at];
        const uint32_t second = data_[at + 1];
        return big_ ? first << 8U | second : second << 8U | first;
    }
    [[nodiscard]] uint32_t u32(size_t at) const {
        const uint32_t first = u16(at);
        const uint32_t second = u16(at + 2);
        return big_ ? first << 16U | second : second << 16U | first;
    }

private:
    std::span<const uint8_t> data_;
    bool big_ = false;
};

}  // namespace

int exifOrientation(std::span<const uint8_t> segment) {
    static constexpr uint8_t name[] = {'E', 'x', 'i', 'f', 0, 0};
    constexpr uint32_t orientationTag = 0x0112;
    constexpr uint32_t shortType = 3;
    constexpr size_t entrySize = 12;
    if (segment.size() < sizeof name || std::memcmp(segment.data(), name, sizeof name) != 0) return 1;
    TiffReader tiff(segment.subspan(sizeof name));
    if (!tiff.open()) return 1;
    const size_t directory = tiff.u32(4);
    const uint32_t count = tiff.u16(directory);
    for (uint32_t i = 0; i < count; ++i) {
        const size_t entry = directory + 2 + i * entrySize;
        if (tiff.u16(entry) != orientationTag || tiff.u16(entry + 2) != shortType) continue;
        const uint32_t value = tiff.u16(entry + 8);
        return value >= 1 && value <= 8 ? static_cast<int>(value) : 1;
    }
    return 1;
}

Result<TBitmap> oriented(TBitmap bitmap, int orientation) {
    if (orientation <= 1 || orientation > 8) return bitmap;
    // Where the stored row and column 0 are seen: 1 top/left, 2 top/right, 3 bottom/right, 4 bottom/left,
    // 5 left/top, 6 right/top, 7 right/bottom, 8 left/bottom.
    const bool swapped = orientation >= 5;
    const bool fromRight = orientation == 2 || orientation == 3 || orientation == 6 || orientation == 7;
    const bool fromBottom = orientation == 3 || orientation == 4 || orientation == 7 || orientation == 8;
    const int32_t width = swapped ? bitmap.height() : bitmap.width();
    const int32_t height = swapped ? bitmap.width() : bitmap.height();
    Result<TBitmap> result = TBitmap::create(width, height, bitmap.format());
    if (!result) return result;
    const size_t step = bitmap.bytesPerPixel();
    for (int32_t y = 0; y < height; ++y) {
        uint8_t* to = result->row(y);
        const int32_t v = fromBottom ? height - 1 - y : y;
        for (int32_t x = 0; x < width; ++x, to += step) {
            const int32_t u = fromRight ? width - 1 - x : x;
            const uint8_t* row = bitmap.row(swapped ? u : v);
            std::memcpy(to, row + static_cast<size_t>(swapped ? v : u) * step, step);
        }
    }
    return result;
}

}  // namespace glimmer
