#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "common/bitmap.h"
#include "imaging/colour_table.h"

namespace glimmer {

/// Shows a 24-bit picture with at most 256 colours.
///
/// A picture that has no more keeps its own. Else the palette is in two parts: the picture's commonest colours as
/// they are (a page's background, its text and its flat areas), and representatives for all others, found by
/// splitting the colour cube where that takes away the most variance (the method of X. Wu, "Efficient statistical
/// computations for optimal color quantization", 1991). Pixels that have a colour of the palette are shown exactly
/// and stop the spreading of errors, so text and flat areas stay as crisp as they were; the others are dithered by
/// error diffusion (R. Floyd and L. Steinberg, 1976) in rows of alternating direction.
class Quantiser {
public:
    /// `bitmap` has 24 bits and outlives the quantiser.
    explicit Quantiser(const TBitmap& bitmap);

    [[nodiscard]] std::span<const Pixel> colours() const { return palette_.colours(); }
    /// Writes the colour numbers of the next row, from the top; `indices` has the picture's width.
    void nextRow(std::span<uint8_t> indices);

private:
    struct Error {
        int32_t blue = 0, green = 0, red = 0;
    };

    [[nodiscard]] uint8_t nearest(unsigned blue, unsigned green, unsigned red);
    void ditherRow(int32_t y, std::span<uint8_t> indices);

    const TBitmap& bitmap_;
    ColourTable palette_;
    bool exact_ = false;
    int32_t y_ = 0;
    std::vector<Error> errors_;      // for this row, in sixteenths, one more on each side
    std::vector<Error> nextErrors_;  // for the row below
    std::vector<uint16_t> nearest_;  // for each cell of the colour cube: 0 is unknown, else number + 1
};

/// A colour and how many pixels have it.
struct ColourCount {
    Pixel colour = 0;
    uint32_t count = 0;
};

/// Representatives for weighted colours, at most `limit` (1 to 256) of them.
std::vector<Pixel> representatives(std::span<const ColourCount> colours, size_t limit);

}  // namespace glimmer
