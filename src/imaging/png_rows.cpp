#include "imaging/png_rows.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <span>

#include "common/row_conversion.h"
#include "common/zlib_streams.h"

namespace glimmer {

namespace {

/// libdeflate's level: files like those of zlib's level 6 in half the time. The next one takes a quarter more time and
/// saves 1 to 6 %, those beyond it cost a multiple.
constexpr int wholeLevel = 6;
/// zlib's, for pictures too large to be compressed whole.
constexpr int streamLevel = 6;

/// PNG's numbers of the filters.
constexpr uint8_t noFilter = 0;
constexpr uint8_t paethFilter = 4;

/// Whether many pixels are as their left neighbour. In such pictures (pages, drawings) plain rows repeat each other
/// and compress best as they are; in photographs the differences do.
bool mostlyFlat(const TBitmap& bitmap) {
    constexpr int32_t rowsLookedAt = 64;
    const size_t step = bitmap.bytesPerPixel();
    size_t same = 0;
    size_t all = 0;
    for (int32_t y = 0; y < bitmap.height(); y += std::max(bitmap.height() / rowsLookedAt, 1)) {
        const uint8_t* row = bitmap.row(y);
        for (size_t i = step; i < static_cast<size_t>(bitmap.width()) * step; i += step) {
            same += std::equal(row + i, row + i + 3, row + i - step) ? 1 : 0;
            ++all;
        }
    }
    return same * 3 >= all;
}

/// The one of the three neighbours that lies nearest to left + up - corner.
uint8_t paethPredictor(int left, int up, int corner) {
    const int toLeft = std::abs(up - corner);
    const int toUp = std::abs(left - corner);
    const int toCorner = std::abs(left + up - 2 * corner);
    return static_cast<uint8_t>(toLeft <= toUp && toLeft <= toCorner ? left : toUp <= toCorner ? up : corner);
}

/// `step` is the distance to the pixel on the left.
void paeth(std::span<const uint8_t> row, std::span<const uint8_t> above, size_t step, uint8_t* to) {
    for (size_t i = 0; i < step; ++i) to[i] = static_cast<uint8_t>(row[i] - above[i]);
    for (size_t i = step; i < row.size(); ++i)
        to[i] = static_cast<uint8_t>(row[i] - paethPredictor(row[i - step], above[i], above[i - step]));
}

/// The first index stands in the highest bits.
void packIndices(std::span<const uint8_t> indices, unsigned depth, uint8_t* to) {
    const size_t perByte = 8 / depth;
    for (size_t i = 0; i < indices.size(); i += perByte) {
        unsigned byte = 0;
        for (size_t k = 0; k < perByte; ++k) byte = byte << depth | (i + k < indices.size() ? indices[i + k] : 0U);
        *to++ = static_cast<uint8_t>(byte);
    }
}

Failure noMemory() { return Failure{"There is not enough memory to write the picture."}; }

struct CompressorDeleter {
    void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

/// All rows at once; nothing when there is no memory for that.
std::optional<Status> compressWhole(PngRows& rows, size_t pieceSize, const ByteSink& sink, const Progress& progress) {
    const size_t count = rows.rowBytes() * static_cast<size_t>(rows.height());
    const std::unique_ptr<libdeflate_compressor, CompressorDeleter> compressor(libdeflate_alloc_compressor(wholeLevel));
    if (!compressor) return std::nullopt;
    const size_t bound = libdeflate_zlib_compress_bound(compressor.get(), count);
    const std::unique_ptr<uint8_t[]> raw(new (std::nothrow) uint8_t[count]);
    const std::unique_ptr<uint8_t[]> packed(new (std::nothrow) uint8_t[bound]);
    if (!raw || !packed) return std::nullopt;
    for (int32_t y = 0; y < rows.height(); ++y) {
        if (!proceed(progress, y, rows.height())) return cancelled();
        rows.write(y, raw.get() + static_cast<size_t>(y) * rows.rowBytes());
    }
    const size_t size = libdeflate_zlib_compress(compressor.get(), raw.get(), count, packed.get(), bound);
    for (size_t at = 0; at < size; at += pieceSize)
        if (Status put = sink({packed.get() + at, std::min(pieceSize, size - at)}); !put) return put;
    return Status();
}

/// One row after the other.
Status compressStream(PngRows& rows, size_t pieceSize, const ByteSink& sink, const Progress& progress) {
    DeflateStream stream(streamLevel);
    if (!stream.ok()) return noMemory();
    std::vector<uint8_t> row(rows.rowBytes());
    std::vector<uint8_t> piece(pieceSize);
    const auto restart = [&] {
        stream.next_out = piece.data();
        stream.avail_out = static_cast<uInt>(piece.size());
    };
    restart();
    for (int32_t y = 0; y < rows.height(); ++y) {
        if (!proceed(progress, y, rows.height())) return cancelled();
        rows.write(y, row.data());
        stream.next_in = row.data();
        stream.avail_in = static_cast<uInt>(row.size());
        const bool last = y == rows.height() - 1;
        for (;;) {
            const int outcome = deflate(&stream, last ? Z_FINISH : Z_NO_FLUSH);
            if (outcome == Z_STREAM_ERROR) return noMemory();
            const bool ended = outcome == Z_STREAM_END;
            if (stream.avail_out == 0 || ended) {
                if (Status put = sink({piece.data(), piece.size() - stream.avail_out}); !put) return put;
                restart();
            }
            if (last ? ended : stream.avail_in == 0) break;
        }
    }
    return {};
}

}  // namespace

PngRows::PngRows(const TBitmap& bitmap)
    : bitmap_(bitmap), alpha_(bitmap.hasTransparency()), palette_(exactPalette(bitmap)) {
    const auto width = static_cast<size_t>(bitmap.width());
    if (palette_) {
        const size_t count = palette_->size();
        depth_ = count <= 2 ? 1 : count <= 4 ? 2 : count <= 16 ? 4 : 8;
        pixelBytes_ = (width * static_cast<size_t>(depth_) + 7) / 8;
        indices_.resize(width);
        return;
    }
    pixelBytes_ = width * (alpha_ ? 4U : 3U);
    wide_.resize(width * 4);
    filtered_ = !mostlyFlat(bitmap);
    if (filtered_) {
        row_.resize(pixelBytes_);
        above_.resize(pixelBytes_);
    }
}

void PngRows::write(int32_t y, uint8_t* to) {
    to[0] = filtered_ ? paethFilter : noFilter;
    if (!filtered_) {
        writePixels(y, to + 1);
        return;
    }
    row_.swap(above_);
    writePixels(y, row_.data());
    paeth(row_, above_, alpha_ ? 4 : 3, to + 1);
}

void PngRows::writePixels(int32_t y, uint8_t* to) {
    const auto width = static_cast<size_t>(bitmap_.width());
    if (palette_) {
        indexRow(bitmap_, y, *palette_, indices_);
        packIndices(indices_, static_cast<unsigned>(depth_), to);
        return;
    }
    const uint8_t* wide = bitmap_.row(y);
    if (bitmap_.format() == PixelFormat::Bgr24) {
        widenRow(wide_.data(), wide, width);
        wide = wide_.data();
    }
    // A file has red first.
    swapRedAndBlue(alpha_ ? to : wide_.data(), wide, width);
    if (!alpha_) narrowRow(to, wide_.data(), width);
}

Status compressRows(PngRows& rows, size_t pieceSize, const ByteSink& sink, const Progress& progress,
                    uint64_t wholeLimit) {
    if (uint64_t{rows.rowBytes()} * static_cast<uint64_t>(rows.height()) <= wholeLimit)
        if (std::optional<Status> done = compressWhole(rows, pieceSize, sink, progress)) return *done;
    return compressStream(rows, pieceSize, sink, progress);
}

}  // namespace glimmer
