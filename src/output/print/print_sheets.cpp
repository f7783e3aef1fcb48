#include "output/print/print_sheets.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace glimmer {

namespace {
constexpr int32_t leastOneColour = 4;  // rows of a stripe
constexpr int32_t leastAsAbove = 12;   // letters go straight on for some rows, too
constexpr int32_t noCut = -1;
constexpr int32_t searchedPart = 5;     // a fifth of the sheet may stay empty for a better cut
constexpr int32_t mostOverlapPart = 4;  // what a sheet repeats is a quarter of it at most
constexpr size_t mostSheets = 1000;
}  // namespace

void EmptyStripes::add(const TBitmap& rows) {
    const size_t pixel = rows.bytesPerPixel();
    const size_t count = static_cast<size_t>(rows.width()) * pixel;
    for (int32_t y = 0; y < rows.height(); ++y) {
        const uint8_t* const row = rows.row(y);
        const uint8_t* const above = y > 0 ? rows.row(y - 1) : lastRow_.data();
        Row kind = Busy;
        if (std::memcmp(row, row + pixel, count - pixel) == 0)  // each pixel is the next one
            kind = OneColour;
        else if ((y > 0 || lastRow_.size() == count) && std::memcmp(row, above, count) == 0)
            kind = AsAbove;
        kinds_.push_back(kind);
    }
    if (!rows.empty()) lastRow_.assign(rows.row(rows.height() - 1), rows.row(rows.height() - 1) + count);
}

int32_t EmptyStripes::cutIn(Row kind, int32_t least, int32_t first, int32_t last) const {
    const auto empty = [&](int32_t row) { return kinds_[static_cast<size_t>(row)] >= kind; };
    for (int32_t end = std::min(last, static_cast<int32_t>(kinds_.size()) - 1); end > first; --end) {
        if (!empty(end)) continue;
        int32_t start = end;
        while (start > first + 1 && empty(start - 1)) --start;
        if (end - start + 1 >= least) return (start + end + 1) / 2;
        end = start;
    }
    return noCut;
}

int32_t EmptyStripes::cut(int32_t first, int32_t last) const {
    const int32_t row = cutIn(OneColour, leastOneColour, first, last);
    if (row != noCut) return row;
    const int32_t other = cutIn(AsAbove, leastAsAbove, first, last);
    return other != noCut ? other : last;
}

std::vector<PrintSheet> sheetsOf(const PrintLayout& layout, const EmptyStripes& stripes) {
    const Size picture = layout.picture();
    const InchRect whole = layout.place();
    const InchRect area = layout.area();
    const double rowHeight = whole.height() / picture.height;
    if (!layout.wishes().split || whole.height() <= area.height() + rowHeight / 2)
        return {{{0, 0, picture.width, picture.height}, whole}};
    const auto room = std::max(static_cast<int32_t>(area.height() / rowHeight + 1e-6), 1);
    const auto least = static_cast<int32_t>(picture.height / static_cast<int32_t>(mostSheets)) + 1;
    const int32_t rows = std::max(room, least);
    const auto overlap = std::min(static_cast<int32_t>(std::lround(layout.wishes().overlap / rowHeight)),
                                  std::max(rows / mostOverlapPart, 0));
    std::vector<PrintSheet> sheets;
    int32_t from = 0;
    for (;;) {
        int32_t to = std::min(from + rows, picture.height);
        if (to < picture.height) to = stripes.cut(to - rows / searchedPart, to);
        const double height = (to - from) * rowHeight;
        sheets.push_back({{0, from, picture.width, to}, {whole.left, area.top, whole.right, area.top + height}});
        if (to == picture.height) return sheets;
        from = std::max(to - overlap, from + 1);
    }
}

}  // namespace glimmer
