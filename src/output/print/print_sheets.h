#pragma once

#include <cstdint>
#include <vector>

#include "common/bitmap.h"
#include "output/print/print_layout.h"

namespace glimmer {

/// Which rows of a picture a page can be cut at. Between two lines of text several rows are of one colour; beside
/// frames and columns that go straight on, many are as the row above them.
class EmptyStripes {
public:
    /// The next rows of the picture, in the format of those before.
    void add(const TBitmap& rows);
    /// The best row to begin anew at, at most `last` and more than `first`: in the middle of the stripe of one colour
    /// that reaches furthest down; without one, of a stripe that goes straight on; else `last`.
    [[nodiscard]] int32_t cut(int32_t first, int32_t last) const;

private:
    enum Row : uint8_t { Busy, AsAbove, OneColour };
    [[nodiscard]] int32_t cutIn(Row kind, int32_t least, int32_t first, int32_t last) const;

    std::vector<Row> kinds_;
    std::vector<uint8_t> lastRow_;
};

/// What one sheet of paper shows.
struct PrintSheet {
    Rect source;     ///< part of the picture, pixels
    InchRect place;  ///< of that part on the sheet
};

/// The sheets of a layout, at least one: the whole picture on one where it is not split. Split, each sheet repeats the
/// overlap at its top and ends in an empty stripe where its last fifth has one.
std::vector<PrintSheet> sheetsOf(const PrintLayout& layout, const EmptyStripes& stripes);

}  // namespace glimmer
