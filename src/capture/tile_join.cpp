#include "capture/tile_join.h"

#include <limits>

#include "common/json.h"

namespace glimmer {

namespace {

/// A page as its tiles show it, in screen pixels. 64 bits, since the numbers come from outside.
struct Layout {
    int64_t width = 0;
    int64_t height = 0;
    int64_t stepX = 0;
    int64_t stepY = 0;
    int64_t cropLeft = 0;
    int64_t cropTop = 0;
    int64_t cropRight = 0;
    int64_t cropBottom = 0;
};

/// From page units to pixels where the two differ; `content` is a tile without its scroll bars. A zoomed page of
/// several tiles that is not cropped comes in pixels already.
Layout layOut(const PageTiles& page, Size content) {
    Layout l{page.width, page.height, page.cw, page.ch, page.cropLeft, page.cropTop, page.cropRight, page.cropBottom};
    const bool zoomed = page.zoom || page.forced;
    const bool oneTile = page.rows == 1 && page.cols == 1;
    if (zoomed && page.crop) {
        for (int64_t* x : {&l.width, &l.cropLeft, &l.cropRight}) *x = *x * content.width / page.cw;
        for (int64_t* y : {&l.height, &l.cropTop, &l.cropBottom}) *y = *y * content.height / page.ch;
    } else if (zoomed && oneTile) {
        l.width = content.width;
        l.height = content.height;
    }
    if (zoomed && (page.crop || oneTile)) {
        l.stepX = content.width;
        l.stepY = content.height;
    }
    return l;
}

bool fitsPoint(int64_t value) {
    return value >= std::numeric_limits<int32_t>::min() && value <= std::numeric_limits<int32_t>::max();
}

}  // namespace

PageTiles PageTiles::read(const JsonObject& parameters) {
    PageTiles page;
    page.url = parameters.text("url");
    page.title = parameters.text("title");
    page.key = parameters.text("key");
    page.action = parameters.integer("action");
    page.width = parameters.integer("width");
    page.height = parameters.integer("height");
    page.cw = parameters.integer("cw");
    page.ch = parameters.integer("ch");
    page.rows = parameters.integer("rows");
    page.cols = parameters.integer("cols");
    page.hScrollbar = parameters.flag("hScrollbar");
    page.vScrollbar = parameters.flag("vScrollbar");
    page.zoom = parameters.flag("zoom");
    page.forced = parameters.flag("forced");
    page.crop = parameters.flag("crop");
    page.cropLeft = parameters.integer("cropLeft");
    page.cropTop = parameters.integer("cropTop");
    page.cropRight = parameters.integer("cropRight");
    page.cropBottom = parameters.integer("cropBottom");
    return page;
}

Result<TBitmap> joinTiles(const PageTiles& page, std::vector<TBitmap> tiles, int32_t scrollBar) {
    if (tiles.empty()) return Failure{"No part of the page was captured."};
    if (!page.joinable()) return Failure{"The page has no columns or no scroll step."};
    const TBitmap& first = tiles.front();
    const PixelFormat format = first.format();
    const Layout layout = layOut(
        page, {first.width() - (page.vScrollbar ? scrollBar : 0), first.height() - (page.hScrollbar ? scrollBar : 0)});
    const int64_t width = page.crop ? layout.cropRight - layout.cropLeft : layout.width;
    const int64_t height = page.crop ? layout.cropBottom - layout.cropTop : layout.height;
    if (const Status fits = TBitmap::check(width, height, format); !fits) return fits.failure();
    Result<TBitmap> joined = TBitmap::create(static_cast<int32_t>(width), static_cast<int32_t>(height), format);
    if (!joined) return joined;

    int64_t index = 0;
    for (TBitmap& slot : tiles) {
        const TBitmap tile = std::move(slot);  // its memory ends with this turn
        const int64_t column = index % page.cols;
        const int64_t row = index / page.cols;
        const int64_t x =
            (column + 1 == page.cols ? layout.width - layout.stepX : column * layout.stepX) - layout.cropLeft;
        const int64_t y = (row + 1 == page.rows ? layout.height - layout.stepY : row * layout.stepY) - layout.cropTop;
        // A place beyond 32 bits is beyond every picture too.
        if (fitsPoint(x) && fitsPoint(y)) {
            copyPixels(*joined, {static_cast<int32_t>(x), static_cast<int32_t>(y)}, tile);
        }
        ++index;
    }
    return joined;
}

}  // namespace glimmer
