#include "editor/document/packed_pixels.h"

#include <algorithm>
#include <new>
#include <utility>

#include "common/zlib_streams.h"

namespace glimmer {

namespace {

constexpr size_t outputStep = size_t{64} * 1024;

size_t rowBytes(const TBitmap& pixels) { return static_cast<size_t>(pixels.width()) * pixels.bytesPerPixel(); }

/// row = current - above, byte by byte, modulo 256; the first row is taken as it is.
void differ(const uint8_t* current, const uint8_t* above, uint8_t* out, size_t count) {
    for (size_t i = 0; i < count; ++i) out[i] = static_cast<uint8_t>(current[i] - above[i]);
}

void add(uint8_t* current, const uint8_t* above, size_t count) {
    for (size_t i = 0; i < count; ++i) current[i] = static_cast<uint8_t>(current[i] + above[i]);
}

}  // namespace

std::vector<uint8_t> deflatePixels(const TBitmap& pixels, int32_t top, int32_t bottom) try {
    DeflateStream stream(1, Z_FILTERED);
    if (!stream.ok()) return {};
    const size_t count = rowBytes(pixels);
    std::vector<uint8_t> line(count);
    std::vector<uint8_t> chunk(outputStep);
    std::vector<uint8_t> result;
    for (int32_t y = top; y < bottom; ++y) {
        if (y == top)
            std::copy_n(pixels.row(y), count, line.data());
        else
            differ(pixels.row(y), pixels.row(y - 1), line.data(), count);
        stream.next_in = line.data();
        stream.avail_in = static_cast<uInt>(count);
        const int flush = y + 1 == bottom ? Z_FINISH : Z_NO_FLUSH;
        do {
            stream.next_out = chunk.data();
            stream.avail_out = static_cast<uInt>(chunk.size());
            deflate(&stream, flush);
            const auto made = static_cast<std::ptrdiff_t>(chunk.size() - stream.avail_out);
            result.insert(result.end(), chunk.begin(), chunk.begin() + made);
        } while (stream.avail_out == 0);
    }
    result.shrink_to_fit();
    return result;
} catch (const std::bad_alloc&) {
    return {};
}

Status inflatePixels(std::span<const uint8_t> data, TBitmap& pixels, int32_t top, int32_t bottom) {
    const Failure damaged{"The packed picture is damaged."};
    InflateStream stream;
    if (!stream.ok()) return Failure{"There is not enough memory to unpack a picture."};
    // zlib does not write through next_in; its interface only lacks the const.
    stream.next_in = const_cast<Bytef*>(data.data());
    stream.avail_in = static_cast<uInt>(data.size());
    const size_t count = rowBytes(pixels);
    int answer = Z_OK;
    for (int32_t y = top; y < bottom; ++y) {
        stream.next_out = pixels.row(y);
        stream.avail_out = static_cast<uInt>(count);
        while (stream.avail_out > 0) {
            if (answer == Z_OK) answer = inflate(&stream, Z_NO_FLUSH);
            if (answer != Z_OK && !(answer == Z_STREAM_END && stream.avail_out == 0)) return damaged;
        }
        if (y > top) add(pixels.row(y), pixels.row(y - 1), count);
    }
    // The end mark with its checksum must follow the last pixel directly.
    uint8_t excess = 0;
    if (answer == Z_OK) {
        stream.next_out = &excess;
        stream.avail_out = 1;
        answer = inflate(&stream, Z_FINISH);
        if (stream.avail_out != 1) return damaged;
    }
    if (answer != Z_STREAM_END || stream.avail_in != 0) return damaged;
    return {};
}

PackedPixels::PackedPixels(TBitmap pixels)
    : plain_(std::move(pixels)), size_(plain_.size()), format_(plain_.format()) {}

int32_t PackedPixels::bandRows() const {
    constexpr size_t bandBytes = size_t{512} * 1024;
    return std::max(1, static_cast<int32_t>(bandBytes / TBitmap::stride(size_.width, format_)));
}

bool PackedPixels::packSome() {
    if (plain_.empty()) return false;
    const int32_t top = bandRows() * static_cast<int32_t>(bands_.size());
    const int32_t bottom = std::min(size_.height, top + bandRows());
    std::vector<uint8_t> band = deflatePixels(plain_, top, bottom);
    if (band.empty()) {
        bands_.clear();
        return false;
    }
    bands_.push_back(std::move(band));
    if (bottom == size_.height) plain_ = TBitmap();
    return !plain_.empty();
}

Result<TBitmap> PackedPixels::take() {
    if (!plain_.empty()) {
        bands_.clear();
        return std::exchange(plain_, TBitmap());
    }
    Result<TBitmap> picture = TBitmap::create(size_.width, size_.height, format_);
    if (!picture) return picture;
    int32_t top = 0;
    for (const std::vector<uint8_t>& band : bands_) {
        const int32_t bottom = std::min(size_.height, top + bandRows());
        if (Status done = inflatePixels(band, *picture, top, bottom); !done) return done.failure();
        top = bottom;
    }
    bands_.clear();
    return picture;
}

size_t PackedPixels::byteCount() const {
    size_t sum = plain_.empty() ? 0 : plain_.byteCount();
    for (const std::vector<uint8_t>& band : bands_) sum += band.capacity();
    return sum;
}

}  // namespace glimmer
