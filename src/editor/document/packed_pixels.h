#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/bitmap.h"
#include "common/result.h"

namespace glimmer {

/// The pixels of a rectangle at rest: as they are at first, deflated piece by piece afterwards. A long history of
/// pixel operations is kept so. Move only.
class PackedPixels {
public:
    PackedPixels() = default;
    /// Takes over the bitmap. Nothing is deflated yet, so this costs no time.
    explicit PackedPixels(TBitmap pixels);

    /// Deflates one piece (about 5 ms of work). False when nothing is left to deflate, or no memory is left for it;
    /// the plain pixels stay until the last piece is done.
    bool packSome();
    /// The pixels as a bitmap; what is not deflated is handed out without a copy. Nothing is kept on success, all
    /// on failure (want of memory).
    Result<TBitmap> take();
    /// Bytes of memory in use.
    [[nodiscard]] size_t byteCount() const;
    [[nodiscard]] Size size() const { return size_; }

private:
    [[nodiscard]] int32_t bandRows() const;

    TBitmap plain_;
    std::vector<std::vector<uint8_t>> bands_;  ///< bandRows() rows each, from the top
    Size size_;
    PixelFormat format_ = PixelFormat::Bgra32;
};

/// Deflates the part `rows` (full width, top inclusive, bottom exclusive): each row as the difference to the row
/// above, then zlib's fastest level. Pages are made of repeated rows, so this packs them about as well as a PNG at
/// a fraction of its time. Empty for want of memory.
std::vector<uint8_t> deflatePixels(const TBitmap& pixels, int32_t top, int32_t bottom);
/// The inverse, into the same rows of `pixels`. Fails, with a sentence, unless `data` holds exactly such rows.
Status inflatePixels(std::span<const uint8_t> data, TBitmap& pixels, int32_t top, int32_t bottom);

}  // namespace glimmer
