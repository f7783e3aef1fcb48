#include "imaging/graphutils.h"

#include <gtest/gtest.h>

#include "common/assertion.h"
#include "common/row_conversion.h"
#include "support/pictures.h"

namespace glimmer {
namespace {

/// A picture whose colours run through every channel value, of an odd width.
TBitmap everyValue(PixelFormat format) {
    TBitmap picture = test::noise(257, 6, format, 3);
    for (int32_t y = 0; y < 4; ++y)
        for (uint32_t x = 0; x < 256; ++x) {
            const uint32_t red = y == 3 ? x : y == 0 ? x : 0;
            const uint32_t green = y == 3 ? x : y == 1 ? x : 0;
            const uint32_t blue = y == 3 ? x : y == 2 ? x : 0;
            picture.setPixel(static_cast<int32_t>(x), y, rgb(red, green, blue));
        }
    return picture;
}

TEST(Grayscale, IsTheWholePartOfTheWeightedSumAndClearsTheFourthByte) {
    const TBitmap before = everyValue(PixelFormat::Bgra32);
    TBitmap after = before.clone().take();
    grayscale(after);
    for (int32_t y = 0; y < before.height(); ++y) {
        for (int32_t x = 0; x < before.width(); ++x) {
            const Colour c = before.pixel(x, y);
            const uint32_t grey = (11U * redOf(c) + 59U * greenOf(c) + 30U * blueOf(c)) / 100U;
            ASSERT_EQ(after.pixel(x, y), rgb(grey, grey, grey)) << x << ' ' << y;
            ASSERT_EQ(after.alpha(x, y), 0);
        }
    }
    EXPECT_EQ(after.pixel(255, 0), rgb(28, 28, 28));     // pure red
    EXPECT_EQ(after.pixel(255, 2), rgb(76, 76, 76));     // pure blue
    EXPECT_EQ(after.pixel(255, 3), rgb(255, 255, 255));  // white stays white
}

TEST(Grayscale, EverySumIsDividedExactly) {
    TBitmap picture = TBitmap::create(256, 256, PixelFormat::Bgra32).take();
    for (uint32_t red = 0; red < 256; red += 5) {
        for (uint32_t i = 0; i < 65536; ++i)
            picture.setPixel(static_cast<int32_t>(i % 256), static_cast<int32_t>(i / 256), rgb(red, i / 256, i % 256));
        grayscale(picture);
        for (uint32_t i = 0; i < 65536; ++i)
            ASSERT_EQ(picture.row(static_cast<int32_t>(i / 256))[size_t{4} * (i % 256)],
                      (11 * red + 59 * (i / 256) + 30 * (i % 256)) / 100);
    }
}

TEST(Invert, ComplementsColoursAndSetsTheFourthByte) {
    const TBitmap before = test::noise(9, 5, PixelFormat::Bgra32, 4);
    TBitmap picture = before.clone().take();
    invert(picture);
    for (int32_t y = 0; y < 5; ++y)
        for (int32_t x = 0; x < 9; ++x) ASSERT_EQ(picture.pixel(x, y), before.pixel(x, y) ^ 0xFFFFFFU);
    EXPECT_FALSE(picture.hasTransparency());
    invert(picture);
    for (int32_t y = 0; y < 5; ++y)
        for (int32_t x = 0; x < 9; ++x) ASSERT_EQ(picture.pixel(x, y), before.pixel(x, y));
    EXPECT_FALSE(picture.hasTransparency());
}

TEST(Interlace, IsABlendWithLinesEveryOtherRow) {
    for (const PixelFormat format : {PixelFormat::Bgr24, PixelFormat::Bgra32}) {
        TBitmap before = test::noise(257, 7, format, 5);
        for (int32_t y = 0; y < 2; ++y)
            for (uint32_t x = 0; x < 256; ++x) before.setPixel(static_cast<int32_t>(x), y, rgb(x, x, x));
        TBitmap after = before.clone().take();
        interlace(after);
        for (int32_t y = 0; y < 7; ++y) {
            const uint32_t overlay = y % 2 == 0 ? 0 : 0xC0;
            for (int32_t x = 0; x < 257; ++x) {
                const auto blend = [overlay](uint32_t value) { return (overlay * 64 + value * 191 + 127) / 255; };
                const Colour c = before.pixel(x, y);
                ASSERT_EQ(after.pixel(x, y), rgb(blend(redOf(c)), blend(greenOf(c)), blend(blueOf(c))))
                    << x << ' ' << y;
                ASSERT_EQ(after.alpha(x, y), before.alpha(x, y));
            }
        }
    }
}

TEST(GraphUtils, EffectsThatNeed32BitsSaySo) {
    TBitmap narrow = test::noise(3, 3, PixelFormat::Bgr24, 6);
    EXPECT_THROW(grayscale(narrow), AssertionFailure);
    EXPECT_THROW(invert(narrow), AssertionFailure);
}

// The quick ways of the conversions, at every length about their blocks, against the plain one.
TEST(Conversion, QuickRowsAreThePlainOnes) {
    for (int32_t width = 1; width < 70; ++width) {
        const TBitmap wide = test::noise(width, 3, PixelFormat::Bgra32, static_cast<unsigned>(width));
        TBitmap narrow = test::noise(width, 3, PixelFormat::Bgr24, 7);
        const TBitmap untouched = narrow.clone().take();
        convertPixels(narrow, wide);
        TBitmap slow = untouched.clone().take();
        for (int32_t y = 0; y < 3; ++y) narrowRowSse2(slow.row(y), wide.row(y), static_cast<size_t>(width));
        ASSERT_TRUE(samePixels(slow, narrow));
        const TBitmap again = narrow.converted(PixelFormat::Bgra32).take();
        for (int32_t y = 0; y < 3; ++y) {
            for (int32_t x = 0; x < width; ++x) {
                ASSERT_EQ(narrow.pixel(x, y), wide.pixel(x, y)) << width;
                ASSERT_EQ(again.pixel(x, y), wide.pixel(x, y)) << width;
            }
            for (size_t i = static_cast<size_t>(width) * 3; i < narrow.stride(); ++i)
                ASSERT_EQ(narrow.row(y)[i], untouched.row(y)[i]) << "padding of " << width;
        }
        ASSERT_FALSE(again.hasTransparency());
    }
}

}  // namespace
}  // namespace glimmer
