#include "imaging/scaling.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/pictures.h"

namespace glimmer {
namespace {

/// The weight of old pixel k in new pixel i: its share of the area when reducing, linear when enlarging.
double weightOf(int32_t from, int32_t to, int32_t i, int32_t k) {
    const double scale = static_cast<double>(from) / to;
    if (to < from) {
        const double part = std::min((i + 1) * scale, k + 1.0) - std::max(i * scale, static_cast<double>(k));
        return std::max(0.0, part) / scale;
    }
    const double place = std::clamp((i + 0.5) * scale - 0.5, 0.0, from - 1.0);
    return std::max(0.0, 1 - std::abs(place - k));
}

/// One new pixel by the plain double sum over the whole picture: blue, green, red, alpha.
std::array<double, 4> plain(const TBitmap& picture, Size size, int32_t x, int32_t y) {
    std::array<double, 4> sum{};
    for (int32_t j = 0; j < picture.height(); ++j) {
        for (int32_t i = 0; i < picture.width(); ++i) {
            const double weight = weightOf(picture.width(), size.width, x, i) *
                                  weightOf(picture.height(), size.height, y, j) * picture.alpha(i, j);
            const Colour colour = picture.pixel(i, j);
            sum[0] += weight * blueOf(colour);
            sum[1] += weight * greenOf(colour);
            sum[2] += weight * redOf(colour);
            sum[3] += weight;
        }
    }
    for (size_t c = 0; c < 3; ++c) sum[c] = sum[3] > 0 ? sum[c] / sum[3] : 0;
    return sum;
}

TEST(Scaling, EveryNewPixelIsTheWeightedMeanOfItsArea) {
    const Size sizes[][2] = {{{23, 40}, {5, 3}},  {{23, 40}, {60, 90}}, {{23, 40}, {40, 7}}, {{23, 40}, {7, 80}},
                             {{1, 9}, {5, 1}},    {{17, 1}, {4, 6}},    {{3, 3}, {3, 2}},    {{16, 700}, {16, 2}},
                             {{33, 520}, {3, 1}}, {{8, 600}, {8, 599}}, {{2, 2}, {1, 1}},    {{40, 9}, {39, 9}}};
    unsigned seed = 0;
    for (const auto& [from, to] : sizes) {
        for (const bool opaque : {false, true, true}) {
            const PixelFormat format = ++seed % 3 == 0 ? PixelFormat::Bgr24 : PixelFormat::Bgra32;
            TBitmap picture = test::noise(from.width, from.height, format, seed);
            if (opaque) picture = picture.converted(PixelFormat::Bgr24).take().converted(format).take();
            const TBitmap result = resized(picture, to.width, to.height).take();
            ASSERT_EQ(result.size(), to);
            ASSERT_EQ(result.format(), picture.format());
            for (int32_t y = 0; y < to.height; y += 1 + to.height / 8) {
                for (int32_t x = 0; x < to.width; x += 1 + to.width / 8) {
                    const std::array<double, 4> expected = plain(picture, to, x, y);
                    const Colour colour = result.pixel(x, y);
                    ASSERT_NEAR(blueOf(colour), expected[0], 0.51) << to.width << ' ' << to.height;
                    ASSERT_NEAR(greenOf(colour), expected[1], 0.51);
                    ASSERT_NEAR(redOf(colour), expected[2], 0.51);
                    ASSERT_NEAR(result.alpha(x, y), expected[3], 0.51);
                }
            }
        }
    }
}

TEST(Scaling, FlatColoursStayExactAndAThinLineIsNotLost) {
    for (const uint32_t value : {0U, 1U, 127U, 254U, 255U}) {
        const Colour colour = rgb(value, 255 - value, value);
        const TBitmap page = test::plain(300, 2000, colour);
        for (const Size size : {Size{30, 200}, Size{7, 3}, Size{301, 2100}, Size{299, 1999}}) {
            const TBitmap result = resized(page, size.width, size.height).take();
            EXPECT_TRUE(samePixels(result, test::plain(size.width, size.height, colour))) << value << ' ' << size.width;
        }
    }
    TBitmap lined = test::plain(100, 1000, rgb(255, 255, 255), PixelFormat::Bgr24);
    lined.fill({0, 457, 100, 458}, rgb(5, 5, 5));
    const TBitmap small = thumbnail(lined, {100, 100}).take();
    ASSERT_EQ(small.size(), (Size{10, 100}));
    EXPECT_EQ(small.pixel(5, 45), rgb(230, 230, 230));  // (9 x 255 + 5) / 10
    EXPECT_EQ(small.pixel(5, 44), rgb(255, 255, 255));
}

TEST(Scaling, ThumbnailFitsAndNeverGrows) {
    const struct {
        Size picture, within, expected;
    } cases[] = {
        {{1280, 10000}, {150, 150}, {19, 150}}, {{1920, 1080}, {150, 150}, {150, 84}}, {{40, 30}, {150, 150}, {40, 30}},
        {{200000, 3}, {100, 100}, {100, 1}},    {{500, 500}, {0, 0}, {1, 1}},
    };
    for (const auto& c : cases) EXPECT_EQ(fittedSize(c.picture, c.within), c.expected) << c.picture.width;
    EXPECT_FALSE(resized(TBitmap(), 5, 5).ok());
    EXPECT_FALSE(resized(test::noise(3, 3, PixelFormat::Bgr24, 1), 0, 5).ok());
}

}  // namespace
}  // namespace glimmer
