#include "common/region.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace glimmer {
namespace {

constexpr Rect board{0, 0, 24, 24};

/// A region pixel by pixel, the plain way.
using Pixels = std::vector<bool>;

Pixels pixelsOf(const Region& region) {
    Pixels pixels;
    for (int32_t y = board.top; y < board.bottom; ++y)
        for (int32_t x = board.left; x < board.right; ++x) pixels.push_back(region.contains({x, y}));
    return pixels;
}

Pixels merged(const Pixels& a, const Pixels& b, const std::function<bool(bool, bool)>& rule) {
    Pixels result;
    for (size_t i = 0; i < a.size(); ++i) result.push_back(rule(a[i], b[i]));
    return result;
}

/// The pixels as one-pixel rectangles put together one by one.
Region assembled(const Pixels& pixels) {
    Region region;
    for (size_t i = 0; i < pixels.size(); ++i) {
        const auto x = static_cast<int32_t>(i % 24);
        const auto y = static_cast<int32_t>(i / 24);
        if (pixels[i]) region = region.united(Region::rectangle({x, y, x + 1, y + 1}));
    }
    return region;
}

Region randomRegion(std::mt19937& random) {
    Region region;
    for (int i = 0; i < 6; ++i) {
        const auto side = [&random] { return static_cast<int32_t>(random() % 25); };
        const Rect area = Rect{side(), side(), side(), side()}.normalized();
        region = i % 2 == 0 ? region.united(Region::rectangle(area)) : region.exclusiveOr(Region::ellipse(area));
    }
    return region;
}

TEST(Region, OperationsAreThoseOfPixelSetsAndTheFormIsUnique) {
    std::mt19937 random(7);
    for (int round = 0; round < 150; ++round) {
        const Region a = randomRegion(random);
        const Region b = randomRegion(random);
        const struct {
            Region result;
            std::function<bool(bool, bool)> rule;
        } cases[] = {
            {a.united(b), [](bool p, bool q) { return p || q; }},
            {a.intersected(b), [](bool p, bool q) { return p && q; }},
            {a.subtracted(b), [](bool p, bool q) { return p && !q; }},
            {a.exclusiveOr(b), [](bool p, bool q) { return p != q; }},
            {a.invertedWithin(board), [](bool p, bool) { return !p; }},
        };
        for (const auto& c : cases) {
            const Pixels expected = merged(pixelsOf(a), pixelsOf(b), c.rule);
            ASSERT_EQ(pixelsOf(c.result), expected);
            ASSERT_EQ(c.result.pixelCount(), static_cast<uint64_t>(std::count(expected.begin(), expected.end(), true)));
            if (round % 15 == 0) {
                ASSERT_EQ(c.result, assembled(expected));
            }
        }
        ASSERT_EQ(a.invertedWithin(board).invertedWithin(board), a);
        ASSERT_EQ(a.moved(5, -9).moved(-5, 9), a);
        ASSERT_EQ(a.moved(1000, -1000).bounds(), a.empty() ? Rect() : a.bounds().moved(1000, -1000));
    }
}

TEST(Region, BoundsAreTheSmallestRectangle) {
    EXPECT_TRUE(Region().bounds().empty());
    EXPECT_TRUE(Region::rectangle({5, 5, 5, 9}).empty());
    EXPECT_TRUE(Region::rectangle({0, 0, 9, 9}).isRectangle());
    const Region two = Region::rectangle({2, 30, 4, 31}).united(Region::rectangle({-7, 3, 1, 5}));
    EXPECT_EQ(two.bounds(), (Rect{-7, 3, 4, 31}));
    EXPECT_FALSE(two.contains({0, 20}));
}

TEST(Region, EllipseIsTheSetOfCentresInside) {
    for (const Rect area : {Rect{3, 4, 4, 5}, Rect{0, 0, 2, 2}, Rect{1, 2, 20, 9}, Rect{2, 1, 9, 24},
                            Rect{0, 0, 24, 24}, Rect{5, 0, 6, 20}}) {
        const Region region = Region::ellipse(area);
        const int64_t w = area.width();
        const int64_t h = area.height();
        for (int32_t y = 0; y < 24; ++y) {
            for (int32_t x = 0; x < 24; ++x) {
                const int64_t dx = 2 * x + 1 - area.left - area.right;
                const int64_t dy = 2 * y + 1 - area.top - area.bottom;
                ASSERT_EQ(region.contains({x, y}), dx * dx * h * h + dy * dy * w * w <= w * w * h * h) << x << ' ' << y;
            }
        }
    }
    // Far away and large: sums must not leave their range.
    EXPECT_EQ(Region::ellipse({0, 0, 200000, 3}).bounds(), (Rect{0, 0, 200000, 3}));
}

TEST(Region, PolygonGoesByPixelCentres) {
    const Point square[] = {{2, 3}, {9, 3}, {9, 8}, {2, 8}};
    EXPECT_EQ(Region::polygon(square), Region::rectangle({2, 3, 9, 8}));
    const Point reversed[] = {{2, 8}, {9, 8}, {9, 3}, {2, 3}};
    EXPECT_EQ(Region::polygon(reversed), Region::rectangle({2, 3, 9, 8}));
    const Point line[] = {{2, 8}, {9, 8}};
    EXPECT_TRUE(Region::polygon(line).empty());

    const Point triangle[] = {{0, 0}, {20, 0}, {0, 20}};
    const Region half = Region::polygon(triangle);
    for (int32_t y = 0; y < 24; ++y)
        for (int32_t x = 0; x < 24; ++x)
            ASSERT_TRUE(x + y == 19 || half.contains({x, y}) == (x + y < 19)) << x << ' ' << y;

    // The outline runs round the inner square twice: it stays selected.
    const Point twice[] = {{0, 0}, {20, 0}, {20, 20}, {5, 20}, {5, 5}, {15, 5}, {15, 15}, {0, 15}};
    EXPECT_TRUE(Region::polygon(twice).contains({10, 10}));
    EXPECT_TRUE(Region::polygon(twice).contains({10, 17}));
    EXPECT_FALSE(Region::polygon(twice).contains({2, 17}));
}

}  // namespace
}  // namespace glimmer
