#include "capture/tile_join.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "common/json.h"
#include "support/pictures.h"

namespace glimmer {
namespace {

constexpr int32_t scrollBar = 17;
constexpr Colour scrollBarColour = rgb(255, 0, 255);

PageTiles tiles(int32_t width, int32_t height, int32_t stepX, int32_t stepY, int32_t cols, int32_t rows) {
    PageTiles page;
    page.width = width;
    page.height = height;
    page.cw = stepX;
    page.ch = stepY;
    page.cols = cols;
    page.rows = rows;
    return page;
}

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
    std::vector<TBitmap> grabs;
    for (int32_t row = 0; row < how.rows; ++row) {
        for (int32_t col = 0; col < how.cols; ++col) {
            const Point at = {std::min(col * visible.width, page.width() - visible.width),
                              std::min(row * visible.height, page.height() - visible.height)};
            grabs.push_back(grabbed(page, at, visible, how.hScrollbar, how.vScrollbar));
        }
    }
    return grabs;
}

TEST(Joining, GivesThePageOrItsPart) {
    struct Case {
        const char* name;
        Size page;
        Size visible;
        bool hScrollbar = false;
        bool vScrollbar = false;
        Rect crop{};                        ///< empty: the whole page
        bool PageTiles::*zoomed = nullptr;  ///< to 150 %: the page is told in units of one and a half pixels
        Rect cropped = crop;
    };
    for (const Case& c : {Case{"one tile", {40, 30}, {40, 30}}, Case{"whole steps", {120, 90}, {40, 30}},
                          Case{"last column and row overlap", {101, 77}, {40, 30}},
                          Case{"one column, last row overlaps", {40, 100}, {40, 30}},
                          Case{"both scroll bars", {101, 77}, {40, 30}, true, true},
                          Case{"vertical scroll bar", {40, 95}, {40, 30}, false, true},
                          Case{"cropped inside", {101, 77}, {40, 30}, false, false, {13, 9, 88, 61}},
                          Case{"cropped with scroll bars", {101, 77}, {40, 30}, true, true, {0, 31, 101, 77}},
                          Case{"one tile, zoomed", {60, 45}, {60, 45}, true, true, {}, &PageTiles::zoom},
                          Case{"one tile, forced", {60, 45}, {60, 45}, true, true, {}, &PageTiles::forced},
                          // 11 units are 16.5 pixels; the fraction is dropped.
                          Case{"cropped and zoomed",
                               {180, 126},
                               {60, 45},
                               false,
                               false,
                               {11, 20, 101, 84},
                               &PageTiles::zoom,
                               {16, 30, 151, 126}}}) {
        SCOPED_TRACE(c.name);
        const TBitmap page = test::noise(c.page.width, c.page.height, PixelFormat::Bgr24, 7);
        const auto units = [&](int32_t pixels) { return c.zoomed != nullptr ? pixels * 2 / 3 : pixels; };
        PageTiles how = tiles(units(c.page.width), units(c.page.height), units(c.visible.width),
                              units(c.visible.height), (c.page.width + c.visible.width - 1) / c.visible.width,
                              (c.page.height + c.visible.height - 1) / c.visible.height);
        if (c.zoomed != nullptr) how.*c.zoomed = true;
        how.hScrollbar = c.hScrollbar;
        how.vScrollbar = c.vScrollbar;
        how.crop = !c.crop.empty();
        std::tie(how.cropLeft, how.cropTop, how.cropRight, how.cropBottom) =
            std::tie(c.crop.left, c.crop.top, c.crop.right, c.crop.bottom);
        const Result<TBitmap> joined = joinTiles(how, grabAll(page, how, c.visible), scrollBar);
        ASSERT_TRUE(joined.ok()) << joined.message();
        EXPECT_TRUE(samePixels(*joined, how.crop ? page.cropped(c.cropped).take() : page.clone().take()));
    }
}

TEST(Joining, SurplusTilesGoOnDownwardsAndLaterOnesWin) {
    std::vector<TBitmap> grabs;
    for (uint32_t i = 0; i < 6; ++i) {
        grabs.push_back(TBitmap::create(10, 10, PixelFormat::Bgr24).take());
        grabs.back().fill(grabs.back().bounds(), rgb(i + 1, 0, 0));
    }
    const TBitmap joined = joinTiles(tiles(20, 30, 10, 10, 2, 2), std::move(grabs), scrollBar).take();
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
    const auto page = [](int32_t width, int32_t height, int32_t cols) { return tiles(width, height, 10, 10, cols, 1); };
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
        std::vector<TBitmap> grabs;
        grabs.push_back(TBitmap::create(10, 10, PixelFormat::Bgr24).take());
        EXPECT_FALSE(joinTiles(r.page, std::move(grabs), scrollBar).ok()) << r.name;
    }
    EXPECT_FALSE(joinTiles(page(10, 10, 1), {}, scrollBar).ok()) << "no tiles";
}

TEST(Joining, PlacesOutsideThePictureAreLeftOut) {
    PageTiles how = tiles(10, 10, INT32_MAX, INT32_MAX, 2, INT32_MAX);
    how.cropLeft = INT32_MIN;
    std::vector<TBitmap> grabs(5);
    for (TBitmap& tile : grabs) tile = TBitmap::create(10, 10, PixelFormat::Bgr24).take();
    EXPECT_TRUE(joinTiles(how, std::move(grabs), scrollBar).ok());
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
