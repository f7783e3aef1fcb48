#pragma once

#include <png.h>

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "support/png_maker.h"

// Pictures for tests that know nothing of the program: made by png_maker.h, read by libpng alone.

namespace glimmer::test {

struct RgbPicture {
    uint32_t width = 0;
    uint32_t height = 0;
    std::vector<uint32_t> pixels;  ///< 0xRRGGBB, rows from the top; empty: none

    [[nodiscard]] uint32_t at(uint32_t x, uint32_t y) const { return pixels.at(size_t{y} * width + x); }
    bool operator==(const RgbPicture&) const = default;
};

inline RgbPicture makePicture(uint32_t width, uint32_t height,
                              const std::function<uint32_t(uint32_t, uint32_t)>& colour) {
    RgbPicture picture{width, height, {}};
    for (uint32_t y = 0; y < height; ++y)
        for (uint32_t x = 0; x < width; ++x) picture.pixels.push_back(colour(x, y));
    return picture;
}

/// A picture in which every pixel tells its place, and `seed` the picture.
inline RgbPicture patternPicture(uint32_t width, uint32_t height, uint32_t seed = 0) {
    return makePicture(width, height, [seed](uint32_t x, uint32_t y) {
        return (x & 255U) << 16U | (y & 255U) << 8U | ((x >> 8U) * 16 + (y >> 8U) + seed * 37) % 256;
    });
}

inline Bytes pngOf(const RgbPicture& picture) {
    return makePng(picture.width, picture.height, {}, [&picture](uint32_t x, uint32_t y, int channel) {
        return picture.at(x, y) >> (16 - 8 * channel) & 255U;
    });
}

/// No picture when libpng refuses the file.
inline RgbPicture pictureOf(std::span<const uint8_t> png) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    RgbPicture picture;
    if (png_image_begin_read_from_memory(&image, png.data(), png.size()) == 0) return picture;
    image.format = PNG_FORMAT_RGB;
    Bytes bytes(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr) == 0) return picture;
    picture.width = image.width;
    picture.height = image.height;
    for (size_t i = 0; i + 2 < bytes.size(); i += 3)
        picture.pixels.push_back(uint32_t{bytes[i]} << 16U | uint32_t{bytes[i + 1]} << 8U | bytes[i + 2]);
    return picture;
}

}  // namespace glimmer::test
