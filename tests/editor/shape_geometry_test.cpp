#include "editor/annotations/shape_geometry.h"

#include <gtest/gtest.h>

#include "support/assertions.h"

namespace glimmer {
namespace {

TEST(LabelPlacement, AllTwelvePositionsTouchTheirGuides) {
    const Rect shape = {100, 200, 201, 351};  // both sides odd
    const struct {
        int32_t position;
        Rect label;  // of 31 x 21
        int32_t x, y;
    } rows[] = {
        {1, {100, 139, 131, 160}, 100, 160},  {2, {135, 139, 166, 160}, 150, 160},
        {3, {170, 139, 201, 160}, 201, 160},  {4, {100, 391, 131, 412}, 100, 391},
        {5, {135, 391, 166, 412}, 150, 391},  {6, {170, 391, 201, 412}, 201, 391},
        {7, {29, 200, 60, 221}, 60, 200},     {8, {29, 265, 60, 286}, 60, 275},
        {9, {29, 330, 60, 351}, 60, 351},     {10, {241, 200, 272, 221}, 241, 200},
        {11, {241, 265, 272, 286}, 241, 275}, {12, {241, 330, 272, 351}, 241, 351},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(labelRect(shape, {31, 21}, row.position), row.label) << row.position;
        EXPECT_EQ(positionGuides(shape, row.position), (std::vector<GuideLine>{{true, row.x}, {false, row.y}}))
            << row.position;
        EXPECT_EQ(snappedPosition(shape, row.label.moved(9, -9)), row.position);
        EXPECT_EQ(snappedPosition(shape, row.label.moved(0, 10)), freeTextPosition);
    }
}

TEST(LabelPlacement, HalvesGoTowardZeroOnBothSidesOfIt) {
    EXPECT_EQ(positionGuides({-101, 0, 0, 0}, 2)[0].at, -50);
    EXPECT_EQ(positionGuides({0, 0, 101, 0}, 2)[0].at, 50);
    EXPECT_EQ(labelRect({0, -7, 10, 0}, {4, 5}, 8).top, -3 - 2);
}

TEST(FreeLabelGuides, ShowWithinNineOfAnEdgeNearOneFirst) {
    const Rect shape = {100, 100, 300, 200};
    const Rect far = {1000, 1000, 1060, 1020};
    EXPECT_TRUE(freeLabelGuides(shape, far).empty());
    const auto vertical = [&](int32_t left, int32_t right) {
        return freeLabelGuides(shape, {left, 1000, right, 1020});
    };
    const std::vector<GuideLine> leftGuide = {{true, 100}};
    EXPECT_EQ(vertical(109, 165), leftGuide);
    EXPECT_EQ(vertical(91, 165), leftGuide);
    EXPECT_TRUE(vertical(110, 165).empty());
    EXPECT_TRUE(vertical(90, 165).empty());
    EXPECT_EQ(vertical(40, 109), leftGuide) << "the far edge counts when the near one is away";
    EXPECT_EQ(vertical(309, 400), (std::vector<GuideLine>{{true, 300}}));
    EXPECT_EQ(vertical(181, 237), (std::vector<GuideLine>{{true, 200}})) << "centre to centre";
    EXPECT_EQ(freeLabelGuides(shape, {600, 95, 700, 203}),
              (std::vector<GuideLine>{{false, 100}, {false, 200}, {false, 150}}));
}

TEST(Handles, StandClockwiseAndResizeWhatTheyStandFor) {
    const Rect rect = {10, 20, 110, 221};
    const struct {
        Point at;
        Rect dragged;  // by (5, 7)
        HandleCursor cursor, exchanged;
    } rows[] = {
        {{10, 20}, {15, 27, 110, 221}, HandleCursor::NorthWestSouthEast, HandleCursor::NorthEastSouthWest},
        {{60, 20}, {10, 27, 110, 221}, HandleCursor::Vertical, HandleCursor::Vertical},
        {{110, 20}, {10, 27, 115, 221}, HandleCursor::NorthEastSouthWest, HandleCursor::NorthWestSouthEast},
        {{110, 120}, {10, 20, 115, 221}, HandleCursor::Horizontal, HandleCursor::Horizontal},
        {{110, 221}, {10, 20, 115, 228}, HandleCursor::NorthWestSouthEast, HandleCursor::NorthEastSouthWest},
        {{60, 221}, {10, 20, 110, 228}, HandleCursor::Vertical, HandleCursor::Vertical},
        {{10, 221}, {15, 20, 110, 228}, HandleCursor::NorthEastSouthWest, HandleCursor::NorthWestSouthEast},
        {{10, 120}, {15, 20, 110, 221}, HandleCursor::Horizontal, HandleCursor::Horizontal},
    };
    const Rect mirrored = {110, 20, 10, 221};
    const Rect upsideDown = {10, 221, 110, 20};
    const Rect turned = {110, 221, 10, 20};
    for (int32_t handle = 0; handle < handleCount; ++handle) {
        const auto& row = rows[handle];
        EXPECT_EQ(handlePoint(rect, handle), row.at) << handle;
        EXPECT_EQ(handleAt(rect, {row.at.x + 5, row.at.y - 5}, 11), handle);
        EXPECT_EQ(handleAt(rect, {row.at.x + 6, row.at.y}, 11), noHandle);
        EXPECT_EQ(resizedByHandle(rect, handle, 5, 7), row.dragged) << handle;
        EXPECT_EQ(handleCursor(rect, handle), row.cursor);
        EXPECT_EQ(handleCursor(turned, handle), row.cursor);
        EXPECT_EQ(handleCursor(mirrored, handle), row.exchanged);
        EXPECT_EQ(handleCursor(upsideDown, handle), row.exchanged);
    }
    for (const int32_t none : {-1, 8})
        test::expectAssertion("nGrabId>=0&&nGrabId<8", "uShapes", [&] { handlePoint(rect, none); });
}

TEST(Handles, HaveAMiddlePixelOnEveryScreen) {
    for (const int32_t dpi : {72, 96, 120, 144, 192}) EXPECT_EQ(handleSize(dpi) % 2, 1);
}

TEST(LineRoute, JoinsNearestPoints) {
    const Rect shape = {100, 100, 200, 200};
    const struct {
        Rect label;
        LineRoute route;
    } rows[] = {
        {{100, 40, 160, 60}, {{130, 100}, {130, 60}}},     // above: through the middle of what they share
        {{0, 120, 60, 150}, {{100, 135}, {60, 135}}},      // left
        {{230, 240, 300, 260}, {{200, 200}, {230, 240}}},  // from corner to corner
        {{50, 240, 500, 260}, {{150, 200}, {150, 240}}},   // wider than the shape
    };
    for (const auto& row : rows) EXPECT_EQ(lineRoute(shape, false, row.label), row.route);
    EXPECT_FALSE(lineRoute(shape, false, {150, 150, 160, 160}).has_value());
    EXPECT_FALSE(lineRoute(shape, false, {200, 100, 260, 120}).has_value()) << "touching";
    const auto round = lineRoute(shape, true, {300, 300, 320, 320});
    ASSERT_TRUE(round.has_value());
    // 45 degrees on a circle of radius 50 around (150, 150)
    EXPECT_EQ(round->front, (Point{185, 185}));
    EXPECT_EQ(round->back, (Point{300, 300}));
}

TEST(Badge, HasFourPlaces) {
    const Rect shape = {100, 100, 201, 301};
    EXPECT_EQ(badgeRect(shape, NumberPosition::OutsideTopLeft), (Rect{68, 68, 100, 100}));
    EXPECT_EQ(badgeRect(shape, NumberPosition::InsideTopLeft), (Rect{100, 100, 132, 132}));
    EXPECT_EQ(badgeRect(shape, NumberPosition::InsideCentre), (Rect{134, 184, 166, 216}));
    EXPECT_EQ(badgeRect(shape, NumberPosition::InsideBottomRight), (Rect{169, 269, 201, 301}));
}

}  // namespace
}  // namespace glimmer
