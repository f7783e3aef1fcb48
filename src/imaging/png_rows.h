#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "common/bitmap.h"
#include "common/result.h"
#include "imaging/colour_table.h"
#include "imaging/png_codec.h"

namespace glimmer {

/// The rows of a picture as a PNG file holds them: what they consist of is chosen by what the picture holds.
class PngRows {
public:
    explicit PngRows(const TBitmap& bitmap);

    /// With a palette when the picture has at most 256 colours: a third of the bytes to compress, or less.
    [[nodiscard]] const std::optional<ColourTable>& palette() const { return palette_; }
    [[nodiscard]] bool alpha() const { return alpha_; }
    /// Bits of a palette index, else of a channel.
    [[nodiscard]] int depth() const { return depth_; }
    [[nodiscard]] int32_t height() const { return bitmap_.height(); }
    /// Bytes of one row, its filter's number included.
    [[nodiscard]] size_t rowBytes() const { return 1 + pixelBytes_; }

    /// Writes row y, the filter's number first. To be called for each row in turn.
    void write(int32_t y, uint8_t* to);

private:
    void writePixels(int32_t y, uint8_t* to);

    const TBitmap& bitmap_;
    const bool alpha_;
    std::optional<ColourTable> palette_;
    bool filtered_ = false;
    int depth_ = 8;
    size_t pixelBytes_ = 0;
    std::vector<uint8_t> indices_;  ///< with a palette: of one row
    std::vector<uint8_t> wide_;     ///< in colours: pixels of four bytes on their way
    std::vector<uint8_t> row_;      ///< filtered: the unfiltered bytes of this row
    std::vector<uint8_t> above_;    ///< and those of the row before
};

/// Up to so many bytes of rows are compressed whole, which needs them, and as much again, in memory.
constexpr uint64_t wholeRowsLimit = uint64_t{64} * 1024 * 1024;

/// The rows as one zlib stream, handed to `sink` in pieces of at most `pieceSize` bytes: compressed whole, which is
/// quicker, or, above `wholeLimit` bytes and when memory is short, one by one.
Status compressRows(PngRows& rows, size_t pieceSize, const ByteSink& sink, const Progress& progress,
                    uint64_t wholeLimit = wholeRowsLimit);

}  // namespace glimmer
