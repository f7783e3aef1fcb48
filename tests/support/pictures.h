#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "common/bitmap.h"

// Pictures for tests, and the two ways of damaging a file.

namespace glimmer::test {

inline TBitmap noise(int32_t width, int32_t height, PixelFormat format, unsigned seed) {
    std::mt19937 random(seed);
    TBitmap bitmap = TBitmap::create(width, height, format).take();
    for (int32_t y = 0; y < height; ++y)
        for (size_t i = 0; i < static_cast<size_t>(width) * bitmap.bytesPerPixel(); ++i)
            bitmap.row(y)[i] = static_cast<uint8_t>(random());
    return bitmap;
}

/// A picture of one colour.
inline TBitmap plain(int32_t width, int32_t height, Colour colour, PixelFormat format = PixelFormat::Bgra32) {
    TBitmap bitmap = TBitmap::create(width, height, format).take();
    bitmap.fill(bitmap.bounds(), colour);
    return bitmap;
}

/// A white page with dark lines of "text" and some coloured boxes: about `colours` colours.
inline TBitmap page(int32_t width, int32_t height, PixelFormat format, unsigned colours, unsigned seed = 1) {
    std::mt19937 random(seed);
    TBitmap bitmap = plain(width, height, rgb(255, 255, 255), format);
    std::vector<Colour> palette;
    for (unsigned i = 1; i < std::max(colours, 2U); ++i) palette.push_back(random() & 0xFFFFFFU);
    const auto pick = [&random](int32_t below) {
        return static_cast<int32_t>(random() % static_cast<unsigned>(below));
    };
    for (const Colour colour : palette) {
        const int32_t x = pick(width);
        const int32_t y = pick(height);
        bitmap.fill({x, y, x + 1 + pick(width / 3 + 1), y + 1 + pick(height / 8 + 1)}, colour);
    }
    for (int32_t y = 4; y < height; y += 9)
        for (int32_t x = 0; x < width; ++x)
            if (random() % 3 == 0) bitmap.fill({x, y, x + 1, y + 1 + pick(5)}, palette.front());
    return bitmap;
}

inline TBitmap gradient(int32_t width, int32_t height, PixelFormat format) {
    TBitmap bitmap = TBitmap::create(width, height, format).take();
    for (int32_t y = 0; y < height; ++y)
        for (int32_t x = 0; x < width; ++x)
            bitmap.setPixel(x, y,
                            rgb(static_cast<uint32_t>(x * 255 / width), static_cast<uint32_t>(y * 255 / height),
                                static_cast<uint32_t>((x + y) & 255)));
    return bitmap;
}

/// The kinds of pictures that take different ways through an encoder.
inline std::vector<std::pair<std::string, TBitmap>> assortment() {
    std::vector<std::pair<std::string, TBitmap>> all;
    for (const PixelFormat format : {PixelFormat::Bgr24, PixelFormat::Bgra32}) {
        const std::string bits = format == PixelFormat::Bgr24 ? " 24" : " 32";
        all.emplace_back("one pixel" + bits, page(1, 1, format, 1));
        all.emplace_back("two colours" + bits, page(67, 41, format, 2));
        all.emplace_back("four colours" + bits, page(33, 20, format, 4));
        all.emplace_back("sixteen colours" + bits, page(131, 77, format, 16));
        all.emplace_back("250 colours" + bits, page(300, 200, format, 250));
        all.emplace_back("many colours" + bits, page(300, 200, format, 2000));
        all.emplace_back("gradient" + bits, gradient(257, 129, format));
        all.emplace_back("noise" + bits, noise(100, 83, format, 4));
    }
    TBitmap half = page(120, 90, PixelFormat::Bgra32, 30);
    for (int32_t y = 20; y < 70; ++y)
        for (int32_t x = 0; x < 120; ++x) half.row(y)[static_cast<size_t>(x) * 4 + 3] = static_cast<uint8_t>(x * 2);
    all.emplace_back("shaded", std::move(half));
    TBitmap hole = page(50, 50, PixelFormat::Bgra32, 3);
    hole.row(20)[83] = 0;
    all.emplace_back("one hole", std::move(hole));
    return all;
}

/// Some of them, for tests that start programs.
inline std::vector<std::pair<std::string, TBitmap>> fewOfAssortment() {
    std::vector<std::pair<std::string, TBitmap>> few;
    few.emplace_back("one pixel", page(1, 1, PixelFormat::Bgr24, 1));
    few.emplace_back("sixteen colours", page(131, 77, PixelFormat::Bgr24, 16));
    few.emplace_back("gradient", gradient(257, 129, PixelFormat::Bgra32));
    few.emplace_back("transparent noise", noise(100, 83, PixelFormat::Bgra32, 4));
    return few;
}

/// Gives `read` a thousand shortened and a thousand bit-flipped versions of a file. The sanitizers watch; a reader
/// may well accept some of them.
inline void expectNoCrash(const std::vector<uint8_t>& file,
                          const std::function<bool(const std::vector<uint8_t>&)>& read) {
    ASSERT_TRUE(read(file));
    std::mt19937 random(20);
    int refused = 0;
    for (int i = 0; i < 1000; ++i) {
        // From the heap in its exact length, so that one byte too far is seen.
        const std::vector<uint8_t> part(file.begin(),
                                        file.begin() + static_cast<std::ptrdiff_t>(random() % file.size()));
        refused += read(part) ? 0 : 1;
    }
    EXPECT_GT(refused, 0);
    for (int i = 0; i < 1000; ++i) {
        std::vector<uint8_t> flipped = file;
        const unsigned flips = 1 + random() % 8;
        for (unsigned k = 0; k < flips; ++k)
            flipped[random() % flipped.size()] ^= static_cast<uint8_t>(1U << random() % 8);
        read(flipped);
    }
}

}  // namespace glimmer::test
