#include "imaging/gblur2.h"

#include <gtest/gtest.h>

#include <cstring>

#include "imaging/blur_taps.h"
#include "imaging/plain_effects.h"
#include "support/assertions.h"
#include "support/pictures.h"

namespace glimmer {
namespace {

TBitmap noise(Size size, unsigned seed) { return test::noise(size.width, size.height, PixelFormat::Bgr24, seed); }

/// Flat areas, text-like strokes and a gradient.
TBitmap page(Size size, unsigned seed) {
    TBitmap picture = test::page(size.width, size.height, PixelFormat::Bgr24, 12, seed);
    copyPixels(picture, {size.width * 3 / 4, size.height / 2},
               test::gradient(size.width / 4, size.height / 2, PixelFormat::Bgr24));
    return picture;
}

void expectAsDefined(const TBitmap& picture, double radius, const char* what) {
    TBitmap expected = picture.clone().take();
    plain::blur(expected, radius);
    TBitmap narrow = picture.clone().take();
    blurWith(narrow, radius, weighSse2);
    EXPECT_TRUE(samePixels(narrow, expected))
        << what << ", radius " << radius << ", " << picture.width() << " x " << picture.height();
    if (!hasAvx2()) return;
    TBitmap wide = picture.clone().take();
    blurWith(wide, radius, weighAvx2);
    EXPECT_TRUE(samePixels(wide, expected))
        << what << ", wide, radius " << radius << ", " << picture.width() << " x " << picture.height();
}

/// From 0.05 to 80, each `factor` times the one before.
std::vector<double> radii(double factor) {
    std::vector<double> all{0.05};
    while (all.back() * factor < 80) all.push_back(all.back() * factor);
    return all;
}

TEST(GBlur, KernelIsTheDefinedOne) {
    for (const double radius : radii(1.07)) {
        const TGaussianKernel kernel = makeGaussianKernel(radius);
        const plain::Kernel expected = plain::kernelOf(radius);
        ASSERT_EQ(kernel.size, expected.size) << radius;
        double sum = 0;
        for (int j = -kernel.size; j <= kernel.size; ++j) {
            ASSERT_EQ(kernel.weight(j), expected.at(j)) << radius << ' ' << j;
            sum += static_cast<double>(kernel.weight(j));
        }
        ASSERT_NEAR(sum, 1, 1e-6);
    }
    EXPECT_EQ(makeGaussianKernel(0.1).size, 1);
    EXPECT_EQ(makeGaussianKernel(2.5).size, 7);
    EXPECT_EQ(makeGaussianKernel(10).size, 30);
    EXPECT_EQ(makeGaussianKernel(1000).size, 99);
}

// The weights as whole numbers, put together again, must be the weights themselves.
TEST(GBlur, WholeNumberWeightsAreExact) {
    int exact = 0;
    for (const double radius : radii(1.02)) {
        const TGaussianKernel kernel = makeGaussianKernel(radius);
        BlurTaps taps;
        if (!makeBlurTaps(kernel, taps)) {
            EXPECT_LT(radius, 0.4);
            continue;
        }
        ++exact;
        for (int32_t k = 0; k <= kernel.size; ++k) {
            int16_t halves[2][2];
            std::memcpy(halves[0], taps.high[k / 2], 4);
            std::memcpy(halves[1], taps.low[k / 2], 4);
            const double whole = halves[0][k % 2] * 65536.0 + halves[1][k % 2];
            ASSERT_EQ(std::ldexp(whole, -16 - taps.shift), static_cast<double>(kernel.weight(k))) << radius << ' ' << k;
        }
    }
    EXPECT_GT(exact, 200);
}

TEST(GBlur, GivesTheBytesOfTheDefinitionAtEverySize) {
    const Size sizes[] = {{1, 1}, {1, 2}, {2, 1}, {1, 40}, {40, 1}, {5, 5}, {6, 3}, {16, 17}, {43, 30}, {86, 9}};
    unsigned seed = 0;
    for (const double radius : {0.1, 0.2, 0.3, 0.35, 0.4, 0.5, 0.7, 1.0, 1.3, 2.5, 3.3, 5.0, 7.7, 10.0, 20.0, 40.0})
        for (const Size size : sizes) expectAsDefined(noise(size, ++seed), radius, "noise");
}

TEST(GBlur, GivesTheBytesOfTheDefinitionOnLargePictures) {
    const Size size{400, 300};
    for (const double radius : {0.1, 2.5, 10.0, 40.0}) {
        expectAsDefined(noise(size, 11), radius, "noise");
        expectAsDefined(page(size, 12), radius, "page");
    }
    expectAsDefined(page({60, 700}, 13), 6.1, "tall page");
    expectAsDefined(page({700, 60}, 14), 6.1, "wide page");
}

// Flat areas take a way of their own, and the sum of the weights decides between the value and one less.
TEST(GBlur, FlatAreasComeOutAsDefined) {
    for (const double radius : {0.15, 0.3, 0.4, 0.8, 2.0, 2.5, 5.0, 9.3}) {
        TBitmap bands = TBitmap::create(256, 90, PixelFormat::Bgr24).take();
        for (int32_t y = 0; y < 90; ++y)
            for (int32_t x = 0; x < 256; ++x) {
                const auto value = static_cast<uint32_t>(y < 45 ? x : (x / 128 + y / 68) * 90);
                bands.setPixel(x, y, rgb(value, 255 - value, value / 2));
            }
        expectAsDefined(bands, radius, "bands");
        for (const uint32_t value : {0U, 1U, 128U, 255U}) {
            TBitmap flat = test::plain(130, 70, rgb(value, value, value), PixelFormat::Bgr24);
            expectAsDefined(flat, radius, "flat");
            flat.setPixel(64, 35, rgb(value ^ 1U, value, value));
            expectAsDefined(flat, radius, "flat but for one pixel");
        }
    }
}

TEST(GBlur, RefusesOtherFormatsAndIgnoresNoRadius) {
    TBitmap wide = test::noise(4, 4, PixelFormat::Bgra32, 1);
    try {
        GBlur(wide, 2);
        FAIL() << "no exception";
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(), "GBlur может работать только с 24-битными изображениями");
    }
    TBitmap picture = noise({9, 9}, 2);
    const TBitmap before = picture.clone().take();
    for (const double radius : {0.0, -3.0, std::nan("")}) GBlur(picture, radius);
    EXPECT_TRUE(samePixels(picture, before));
}

TEST(Sharpen, IsTheFixedPointFormula) {
    for (const float alpha : {1.001F, 1.5F, 2.0F, 3.7F, 5.999F}) {
        TBitmap source = test::noise(23, 17, PixelFormat::Bgra32, 5);
        const TBitmap original = source.converted(PixelFormat::Bgr24).take();
        TBitmap destination = test::noise(3, 3, PixelFormat::Bgra32, 6);
        ASSERT_TRUE(Sharpen(source, destination, alpha).ok());
        ASSERT_EQ(source.format(), PixelFormat::Bgr24);
        ASSERT_EQ(destination.size(), source.size());
        const auto a = static_cast<int>(std::lround(alpha * 65536.0));
        const auto f = static_cast<int>(std::lround((alpha - 1.0) / 5 * 65536));
        for (int32_t y = 0; y < 17; ++y) {
            for (int32_t x = 0; x < 23; ++x) {
                if (y == 0 || y == 16 || x == 0 || x == 22) {
                    ASSERT_EQ(destination.pixel(x, y), original.pixel(x, y));
                    continue;
                }
                const int centre = greenOf(original.pixel(x, y));
                int sum = centre;
                for (const Point p : {Point{x, y - 1}, Point{x - 1, y}, Point{x + 1, y}, Point{x, y + 1}})
                    sum += greenOf(original.pixel(p.x, p.y));
                const int value = ((centre * a + 32767) >> 16) - ((sum * f + 32767) >> 16);
                ASSERT_EQ(greenOf(destination.pixel(x, y)), std::min(std::max(value, 0), 255)) << alpha;
            }
        }
    }
}

TEST(Sharpen, RefusesWhatItCannotDo) {
    const struct {
        Size source, destination;
        float alpha;
        const char* text;
    } cases[] = {
        {{2, 2}, {5, 5}, 2, "Bitmap must be at least 3x3"}, {{5, 2}, {5, 5}, 2, "Bitmap must be at least 3x3"},
        {{5, 5}, {2, 9}, 2, "Bitmap must be at least 3x3"}, {{5, 5}, {5, 5}, 1, "Alpha must be >1 and <6"},
        {{5, 5}, {5, 5}, 6, "Alpha must be >1 and <6"},     {{5, 5}, {5, 5}, std::nanf(""), "Alpha must be >1 and <6"},
    };
    for (const auto& c : cases) {
        TBitmap source = noise(c.source, 1);
        TBitmap destination = noise(c.destination, 2);
        test::expectAssertion(c.text, "gblur2", [&] { static_cast<void>(Sharpen(source, destination, c.alpha)); });
    }
}

}  // namespace
}  // namespace glimmer
