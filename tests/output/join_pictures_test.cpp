#include "output/picture/join_pictures.h"

#include <gtest/gtest.h>

#include "support/pictures.h"

namespace glimmer {
namespace {

constexpr Colour white = rgb(255, 255, 255);
constexpr Colour red = rgb(255, 0, 0);
constexpr Colour blue = rgb(0, 0, 255);

using test::plain;

TEST(JoinPictures, PutsThemInOrderWithSpaceBetween) {
    const TBitmap first = plain(10, 5, red);
    const TBitmap second = plain(3, 20, blue, PixelFormat::Bgr24);
    const std::vector<const TBitmap*> both{&first, &second};
    struct Row {
        JoinDirection direction;
        Size size;
        Point lastOfFirst, gap, firstOfSecond, empty;
    };
    const Row rows[] = {
        {JoinDirection::Horizontally, {53, 20}, {9, 4}, {10, 0}, {50, 0}, {9, 5}},
        {JoinDirection::Vertically, {10, 65}, {9, 4}, {0, 5}, {0, 45}, {3, 45}},
    };
    for (const Row& row : rows) {
        const Result<TBitmap> joined = joinPictures(both, row.direction);
        ASSERT_TRUE(joined.ok());
        EXPECT_EQ(joined->size(), row.size);
        EXPECT_EQ(joined->pixel(row.lastOfFirst.x, row.lastOfFirst.y), red);
        EXPECT_EQ(joined->pixel(row.gap.x, row.gap.y), white);
        EXPECT_EQ(joined->pixel(row.firstOfSecond.x, row.firstOfSecond.y), blue);
        EXPECT_EQ(joined->pixel(row.empty.x, row.empty.y), white);
        EXPECT_FALSE(joined->hasTransparency());
    }
}

TEST(JoinPictures, RefusesWhatCannotBe) {
    EXPECT_FALSE(joinPictures({}).ok());
    const TBitmap wide = plain(100000, 1, red);
    const std::vector<const TBitmap*> three{&wide, &wide, &wide};
    EXPECT_FALSE(joinPictures(three).ok());  // longer than a picture may be
    EXPECT_TRUE(joinPictures(three, JoinDirection::Vertically, 0).ok());
    EXPECT_FALSE(joinPictures(three, JoinDirection::Vertically, -1).ok());
}

}  // namespace
}  // namespace glimmer
