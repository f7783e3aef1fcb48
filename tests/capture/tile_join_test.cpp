#include "capture/tile_join.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "common/json.h"
#include "support/pictures.h"

namespace glimmer {
namespace {

constexpr int32_t scrollBar = 17;
constexpr Colour scrollBarColour = rgb(255, 0, 255);

/// What a browser of that visible area shows when it is scrolled to `at`, scroll bars in a colour of their own.
TBitmap grabbed(const TBitmap& page, Point at, Size visible, bool hScrollbar, bool vScrollbar) {
    TBitmap tile = TBitmap::create(visible.width + (vScrollbar ? scrollBar : 0),
                                   visible.height + (hScrollbar ? scrollBar : 0), page.format())
                       .take();
    tile.fill(tile.bounds(), scrollBarColour);
    copyPixels(tile, {0, 0}, page, {at.x, at.y, at.x + visible.width, at.y + visible.height});
    return tile;
}

/// Scrolls over a page as the extension does: the last column and row end at the page's edges.
std::vector<TBitmap> grabAll(const TBitmap& page, const PageTiles& how, Size visible) {
    std::vector<TBitmap> tiles;
    for (int32_t row = 0; row < how.rows; ++row) {
        for (int32_t col = 0; col < how.cols; ++col) {
            const Point at = {std::min(col * visible.width, page.width() - visible.width),
                              std::min(row * visible.height, page.height() - visible.height)};
            tiles.push_back(grabbed(page, at, visible, how.hScrollbar, how.vScrollbar));
        }
    }
    return tiles;
}

struct Case {
    const char* name;
    Size page;
    Size visible;
    bool hScrollbar = false;
    bool vScrollbar = false;
    Rect crop{};  ///< empty: the whole page
};

class Joining : public testing::TestWithParam<Case> {};

TEST_P(Joining, GivesThePageOrItsPart) {
    const Case& c = GetParam();
    const TBitmap page = test::noise(c.page.width, c.page.height, PixelFormat::Bgr24, 7);
    PageTiles how;
    how.width = c.page.width;
    how.height = c.page.height;
    how.cw = c.visible.width;
    how.ch = c.visible.height;
    how.cols = (c.page.width + how.cw - 1) / how.cw;
    how.rows = (c.page.height + how.ch - 1) / how.ch;
    how.hScrollbar = c.hScrollbar;
    how.vScrollbar = c.vScrollbar;
    how.crop = !c.crop.empty();
    how.cropLeft = c.crop.left;
    how.cropTop = c.crop.top;
    how.cropRight = c.crop.right;
    how.cropBottom = c.crop.bottom;
    const Result<TBitmap> joined = joinTiles(how, grabAll(page, how, c.visible), scrollBar);
    ASSERT_TRUE(joined.ok()) << joined.message();
    EXPECT_TRUE(samePixels(*joined, how.crop ? page.cropped(c.crop).take() : page.clone().take()));
}

INSTANTIATE_TEST_SUITE_P(
    Pages, Joining,
    testing::Values(Case{"one tile", {40, 30}, {40, 30}}, Case{"whole steps", {120, 90}, {40, 30}},
                    Case{"last column and row overlap", {101, 77}, {40, 30}},
                    Case{"one column, last row overlaps", {40, 100}, {40, 30}},
                    Case{"both scroll bars", {101, 77}, {40, 30}, true, true},
                    Case{"vertical scroll bar", {40, 95}, {40, 30}, false, true},
                    Case{"cropped inside", {101, 77}, {40, 30}, false, false, {13, 9, 88, 61}},
                    Case{"cropped with scroll bars", {101, 77}, {40, 30}, true, true, {0, 31, 101, 77}}),
    [](const testing::TestParamInfo<Case>& info) {
        std::string name = info.param.name;
        std::replace_if(
            name.begin(), name.end(), [](char c) { return c == ' ' || c == ','; }, '_');
        return name;
    });

TEST(JoiningZoomedPages, OneTileGivesItsContent) {
    const TBitmap page = test::noise(60, 45, PixelFormat::Bgra32, 3);
    for (const bool forced : {false, true}) {
        PageTiles how;
        how.width = 40;  // page units at 150 %
        how.height = 30;
        how.cw = how.width;
        how.ch = how.height;
        how.rows = how.cols = 1;
        how.hScrollbar = how.vScrollbar = true;
        (forced ? how.forced : how.zoom) = true;
        const Result<TBitmap> joined = joinTiles(how, grabAll(page, how, {60, 45}), scrollBar);
        ASSERT_TRUE(joined.ok());
        EXPECT_TRUE(samePixels(*joined, page));
    }
}

TEST(JoiningZoomedPages, CropIsCountedInScreenPixels) {
    // 120 x 84 page units at 150 %: 180 x 126 pixels, seen through 60 x 45.
    const TBitmap page = test::noise(180, 126, PixelFormat::Bgra32, 5);
    PageTiles how;
    how.width = 120;
    how.height = 84;
    how.cw = 40;
    how.ch = 30;
    how.cols = 3;
    how.rows = 3;
    how.zoom = how.crop = true;
    how.cropLeft = 11;  // 16.5 pixels, the fraction is dropped
    how.cropTop = 20;
    how.cropRight = 101;
    how.cropBottom = 84;
    const Result<TBitmap> joined = joinTiles(how, grabAll(page, how, {60, 45}), scrollBar);
    ASSERT_TRUE(joined.ok());
    EXPECT_TRUE(samePixels(*joined, *page.cropped({16, 30, 151, 126})));
}

TEST(Joining, SurplusTilesGoOnDownwardsAndLaterOnesWin) {
    PageTiles how;
    how.width = 20;
    how.height = 30;
    how.cw = 10;
    how.ch = 10;
    how.cols = 2;
    how.rows = 2;
    std::vector<TBitmap> tiles;
    for (uint32_t i = 0; i < 6; ++i) {
        tiles.push_back(TBitmap::create(10, 10, PixelFormat::Bgr24).take());
        tiles.back().fill(tiles.back().bounds(), rgb(i + 1, 0, 0));
    }
    const TBitmap joined = joinTiles(how, std::move(tiles), scrollBar).take();
    EXPECT_EQ(joined.pixel(5, 5), rgb(1, 0, 0));
    EXPECT_EQ(joined.pixel(5, 15), 0U) << "the second and last row is aligned to the page's bottom";
    // Row 2 of the tiles comes after the last one and lies at twice the step, over it.
    EXPECT_EQ(joined.pixel(5, 25), rgb(5, 0, 0));
    EXPECT_EQ(joined.pixel(15, 25), rgb(6, 0, 0));
}

TEST(Joining, RefusesWhatCannotBePlacedOrHeld) {
    struct Refusal {
        const char* name;
        PageTiles page;
    };
    const auto page = [](int32_t width, int32_t height, int32_t cols) {
        PageTiles p;
        p.width = width;
        p.height = height;
        p.cw = p.ch = 10;
        p.rows = 1;
        p.cols = cols;
        return p;
    };
    std::vector<Refusal> refusals = {{"no columns", page(10, 10, 0)},
                                     {"negative columns", page(10, 10, -1)},
                                     {"no size", page(0, 0, 1)},
                                     {"product beyond 32 bits", page(65536, 65537, 1)},
                                     {"largest numbers", page(INT32_MAX, INT32_MAX, 1)},
                                     {"zoomed crop without a step", page(10, 10, 1)},
                                     {"crop inside out", page(10, 10, 1)}};
    refusals[5].page.zoom = refusals[5].page.crop = true;
    refusals[5].page.cw = 0;
    refusals[6].page.crop = true;
    refusals[6].page.cropLeft = INT32_MAX;
    refusals[6].page.cropRight = INT32_MIN;
    for (const Refusal& r : refusals) {
        std::vector<TBitmap> tiles;
        tiles.push_back(TBitmap::create(10, 10, PixelFormat::Bgr24).take());
        EXPECT_FALSE(joinTiles(r.page, std::move(tiles), scrollBar).ok()) << r.name;
    }
    EXPECT_FALSE(joinTiles(page(10, 10, 1), {}, scrollBar).ok()) << "no tiles";
}

TEST(Joining, PlacesOutsideThePictureAreLeftOut) {
    PageTiles how;
    how.width = how.height = 10;
    how.cw = how.ch = INT32_MAX;
    how.cols = 2;
    how.rows = INT32_MAX;
    how.cropLeft = INT32_MIN;
    std::vector<TBitmap> tiles(5);
    for (TBitmap& tile : tiles) tile = TBitmap::create(10, 10, PixelFormat::Bgr24).take();
    EXPECT_TRUE(joinTiles(how, std::move(tiles), scrollBar).ok());
}

TEST(PageTiles, ReadsEveryMemberAndTheDefaults) {
    const PageTiles empty = PageTiles::read(*JsonObject::parse("{}"));
    EXPECT_EQ(empty.url, "");
    EXPECT_EQ(empty.cols, 0);
    EXPECT_FALSE(empty.crop);
    const PageTiles full = PageTiles::read(*JsonObject::parse(
        R"({"url":"u","title":"t\u00e4","key":"k","action":105,"width":1,"height":2,"cw":3,"ch":4,"rows":5,"cols":6,)"
        R"("hScrollbar":1,"vScrollbar":2,"zoom":-1,"crop":1,"forced":1,)"
        R"("cropLeft":7,"cropTop":8,"cropRight":9,"cropBottom":10})"));
    EXPECT_EQ(full.url + full.title + full.key, "ut\xC3\xA4k");
    EXPECT_EQ((std::vector{full.action, full.width, full.height, full.cw, full.ch, full.rows, full.cols, full.cropLeft,
                           full.cropTop, full.cropRight, full.cropBottom}),
              (std::vector{105, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_TRUE(full.hScrollbar && full.vScrollbar && full.zoom && full.crop && full.forced);
    const PageTiles wrong = PageTiles::read(*JsonObject::parse(R"({"url":5,"cols":"6","crop":"1","width":1e99})"));
    EXPECT_EQ(wrong.url, "");
    EXPECT_EQ(wrong.cols, 0);
    EXPECT_FALSE(wrong.crop);
    EXPECT_EQ(wrong.width, INT32_MAX);
}

}  // namespace
}  // namespace glimmer
