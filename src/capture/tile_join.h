#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/bitmap.h"

namespace glimmer {

class JsonObject;

/// How a browser extension scrolled over a page while the visible area was grabbed step by step.
struct PageTiles {
    std::string url;
    std::string title;
    std::string key;
    int32_t action = 0;  ///< capture code
    int32_t width = 0;   ///< of the whole page, in page units
    int32_t height = 0;
    int32_t cw = 0;  ///< of one visible area, the step of the scrolling, in page units
    int32_t ch = 0;
    int32_t rows = 0;
    int32_t cols = 0;
    bool hScrollbar = false;  ///< tiles hold a horizontal scroll bar
    bool vScrollbar = false;
    bool zoom = false;    ///< page units are not screen pixels
    bool forced = false;  ///< as if zoomed
    bool crop = false;    ///< only the part below is wanted, in page units
    int32_t cropLeft = 0;
    int32_t cropTop = 0;
    int32_t cropRight = 0;
    int32_t cropBottom = 0;

    static PageTiles read(const JsonObject& parameters);
    /// Whether the numbers are such that tiles can be placed: a column, and a step where one divides.
    [[nodiscard]] bool joinable() const { return cols > 0 && (!crop || !(zoom || forced) || (cw != 0 && ch != 0)); }
};

/// Joins tiles, all in one format and in the order grabbed, into the picture of the page or its wanted part. The last
/// column and row are aligned to the page's right and bottom edge, and a later tile covers an earlier one; tiles
/// beyond rows x cols go on downwards. `scrollBar` is the thickness of a scroll bar in pixels. The tiles are used up,
/// one after the other. Fails without tiles, on a page that is not joinable() and on one whose size cannot be had.
Result<TBitmap> joinTiles(const PageTiles& page, std::vector<TBitmap> tiles, int32_t scrollBar);

}  // namespace glimmer
