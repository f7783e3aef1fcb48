#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "common/bitmap.h"

namespace glimmer {

/// A pixel with its alpha in one word: blue in the low byte, then green, red, alpha.
using Pixel = uint32_t;

constexpr Pixel opaquePixel(uint32_t red, uint32_t green, uint32_t blue) {
    return 0xFF000000U | red << 16U | green << 8U | blue;
}
constexpr unsigned blueIn(Pixel p) { return p & 0xFFU; }
constexpr unsigned greenIn(Pixel p) { return p >> 8U & 0xFFU; }
constexpr unsigned redIn(Pixel p) { return p >> 16U & 0xFFU; }
constexpr unsigned alphaIn(Pixel p) { return p >> 24U; }

/// Reads one pixel of a row in the given format.
template <PixelFormat format>
Pixel pixelFrom(const uint8_t* bytes) {
    const Pixel colour =
        static_cast<Pixel>(bytes[0]) | static_cast<Pixel>(bytes[1]) << 8U | static_cast<Pixel>(bytes[2]) << 16U;
    if constexpr (format == PixelFormat::Bgra32)
        return colour | static_cast<Pixel>(bytes[3]) << 24U;
    else
        return colour | 0xFF000000U;
}

/// Up to 256 different pixels, found by value in constant time.
class ColourTable {
public:
    static constexpr size_t maxColours = 256;

    /// Adds a pixel unless it is there. False when there is no room for it.
    bool add(Pixel pixel);
    /// Its place, or nothing.
    [[nodiscard]] std::optional<uint8_t> find(Pixel pixel) const;
    [[nodiscard]] std::span<const Pixel> colours() const { return colours_; }
    [[nodiscard]] size_t size() const { return colours_.size(); }

private:
    static constexpr size_t slots = 1024;
    static size_t slotOf(Pixel pixel) { return pixel * 0x9E3779B1U >> 22U; }

    std::vector<Pixel> colours_;
    std::array<uint16_t, slots> places_{};  // 0 is free, else place + 1
};

/// All the pixels that a picture has, those with the least alpha first; nothing when they are more than 256.
std::optional<ColourTable> exactPalette(const TBitmap& bitmap);

/// Writes the place of each pixel of a row; all of them must be in the palette.
void indexRow(const TBitmap& bitmap, int32_t y, const ColourTable& palette, std::span<uint8_t> indices);

}  // namespace glimmer
