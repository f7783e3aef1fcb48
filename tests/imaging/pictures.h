#pragma once

#include <random>

#include "common/bitmap.h"

// Made-up pictures for the tests of the effects.

namespace glimmer {

enum class Pattern {
    noise24,   ///< every channel random
    noise32,   ///< the same with random alpha
    opaque32,  ///< 32 bits, alpha 255
    page24,    ///< flat areas, frames, text-like strokes and a gradient, as a web page has them
};

inline void drawPage(TBitmap& page, std::mt19937& random) {
    const auto below = [&random](int32_t limit) {
        return static_cast<int32_t>(random() % static_cast<uint32_t>(limit));
    };
    page.fill(page.bounds(), rgb(255, 255, 255));
    for (int i = 0; i < 6; ++i) {
        const int32_t x = below(page.width());
        const int32_t y = below(page.height());
        page.fill({x, y, x + below(page.width()), y + below(page.height())}, random() & 0xFFFFFFU);
    }
    for (int32_t y = 4; y + 8 < page.height(); y += 14) {
        for (int32_t x = 5; x + 4 < page.width() * 3 / 4; x += 1 + below(6)) {
            const auto ink = static_cast<uint32_t>(below(120));
            page.fill({x, y + below(4), x + 1, y + 4 + below(4)}, rgb(ink, ink, ink));
        }
    }
    for (int32_t x = page.width() * 3 / 4; x < page.width(); ++x)
        page.fill({x, page.height() / 2, x + 1, page.height()}, rgb(static_cast<uint32_t>(x), 200, 255));
}

inline TBitmap makePicture(Pattern pattern, Size size, unsigned seed) {
    std::mt19937 random(seed);
    const bool narrow = pattern == Pattern::noise24 || pattern == Pattern::page24;
    TBitmap picture =
        TBitmap::create(size.width, size.height, narrow ? PixelFormat::Bgr24 : PixelFormat::Bgra32).take();
    if (pattern == Pattern::page24) {
        drawPage(picture, random);
        return picture;
    }
    for (int32_t y = 0; y < size.height; ++y) {
        uint8_t* row = picture.row(y);
        for (size_t i = 0; i < static_cast<size_t>(size.width) * picture.bytesPerPixel(); ++i) {
            row[i] = static_cast<uint8_t>(random());
            if (pattern == Pattern::opaque32 && i % 4 == 3) row[i] = 255;
        }
    }
    return picture;
}

}  // namespace glimmer
