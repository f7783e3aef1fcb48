#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "common/colour.h"
#include "common/geometry.h"
#include "common/result.h"

namespace glimmer {

/// How the pixels of a TBitmap lie in memory; the value is the number of bits.
enum class PixelFormat : uint8_t {
    Bgr24 = 24,   ///< blue, green, red
    Bgra32 = 32,  ///< blue, green, red, alpha (not premultiplied)
};

/// Memory that holds pixels and knows how to give itself back. Lets a bitmap lie over memory that the system
/// owns (a device-independent section, a mapped view) as well as over its own.
class PixelMemory {
public:
    virtual ~PixelMemory() = default;
    [[nodiscard]] virtual uint8_t* data() const = 0;
    /// Keeps the bytes but gives up their addresses; false where that is not possible. data() is null afterwards.
    virtual bool park() { return false; }
    /// Undoes park(); null when no addresses can be had.
    virtual uint8_t* wake() { return data(); }
};

/// Memory of the process's heap, zeroed; null when there is none. The usual allocator.
std::unique_ptr<PixelMemory> heapPixelMemory(size_t count);

/// Makes zeroed memory of that many bytes for TBitmap::create(); null when there is none.
using PixelAllocator = std::unique_ptr<PixelMemory> (*)(size_t);
/// Replaces the allocator, null for the usual one. For the start of a process.
void setPixelAllocator(PixelAllocator allocator);

/// A picture: rows from top to bottom, each padded to a multiple of 4 bytes. Move only; clone() copies.
/// A 32-bit bitmap that has no transparency holds 255 in every fourth byte.
class TBitmap {
public:
    /// Larger pictures are refused everywhere: no coordinate then overflows 32 bits in later sums.
    static constexpr int32_t maxSide = 200000;
    /// Limit for the bytes of one picture; leaves room for others in a 32-bit process.
    static constexpr uint64_t maxBytes = 1024ULL * 1024 * 1024;

    /// An empty picture of 0 x 0.
    TBitmap() = default;
    TBitmap(TBitmap&&) noexcept = default;
    TBitmap& operator=(TBitmap&&) noexcept = default;
    TBitmap(const TBitmap&) = delete;
    TBitmap& operator=(const TBitmap&) = delete;
    ~TBitmap() = default;

    /// A picture of width x height pixels, all bytes 0. Fails, with a sentence, on sizes below 1 or beyond the
    /// limits and when the memory cannot be had.
    static Result<TBitmap> create(int32_t width, int32_t height, PixelFormat format);
    /// A picture over memory that somebody else made; `memory` must hold stride(width, format) * height bytes.
    static TBitmap adopt(std::unique_ptr<PixelMemory> memory, int32_t width, int32_t height, PixelFormat format);
    /// Whether a picture of that size may be made at all (limits only; memory is not tried). Counts in 64 bits.
    static Status check(int64_t width, int64_t height, PixelFormat format);

    [[nodiscard]] Result<TBitmap> clone() const;
    /// The part inside `area`, which is cut to the picture first. Fails when nothing is left.
    [[nodiscard]] Result<TBitmap> cropped(const Rect& area) const;
    /// A copy in the other format; a new alpha is 255, a lost one is dropped without blending.
    [[nodiscard]] Result<TBitmap> converted(PixelFormat format) const;

    /// Gives up the address space of the pixels, where their memory can do that; answers whether it did. Until wake()
    /// only the size and the format may be asked for.
    bool park();
    /// Brings the pixels of a parked picture back, unchanged. Fails when there is no room for them.
    Status wake();
    [[nodiscard]] bool parked() const { return data_ == nullptr && width_ > 0; }

    [[nodiscard]] bool empty() const { return width_ == 0; }
    [[nodiscard]] int32_t width() const { return width_; }
    [[nodiscard]] int32_t height() const { return height_; }
    [[nodiscard]] Size size() const { return {width_, height_}; }
    [[nodiscard]] Rect bounds() const { return {0, 0, width_, height_}; }
    [[nodiscard]] PixelFormat format() const { return format_; }
    [[nodiscard]] size_t bytesPerPixel() const { return static_cast<size_t>(format_) / 8; }
    /// Bytes from one row to the next.
    [[nodiscard]] size_t stride() const { return stride_; }
    static constexpr size_t stride(int32_t width, PixelFormat format) {
        return (static_cast<size_t>(width) * (static_cast<size_t>(format) / 8) + 3) / 4 * 4;
    }
    [[nodiscard]] size_t byteCount() const { return stride_ * static_cast<size_t>(height_); }

    /// Start of row y, 0 <= y < height().
    [[nodiscard]] uint8_t* row(int32_t y) { return data_ + stride_ * static_cast<size_t>(y); }
    [[nodiscard]] const uint8_t* row(int32_t y) const { return data_ + stride_ * static_cast<size_t>(y); }
    /// All rows, padding included.
    [[nodiscard]] std::span<uint8_t> bytes() { return {data_, byteCount()}; }
    [[nodiscard]] std::span<const uint8_t> bytes() const { return {data_, byteCount()}; }

    /// Colour of one pixel inside the picture, without its alpha. For tests and single looks, not for loops.
    [[nodiscard]] Colour pixel(int32_t x, int32_t y) const;
    /// Alpha of one pixel; 255 in a 24-bit picture.
    [[nodiscard]] uint8_t alpha(int32_t x, int32_t y) const;
    /// Sets one pixel, alpha 255.
    void setPixel(int32_t x, int32_t y, Colour colour);
    /// Fills the part of `area` that lies inside the picture; alpha 255.
    void fill(const Rect& area, Colour colour);
    /// Whether some pixel is not opaque.
    [[nodiscard]] bool hasTransparency() const;

private:
    std::unique_ptr<PixelMemory> memory_;
    uint8_t* data_ = nullptr;
    int32_t width_ = 0;
    int32_t height_ = 0;
    size_t stride_ = 0;
    PixelFormat format_ = PixelFormat::Bgra32;
};

/// Copies `source`, both in the same format, so that its top-left corner falls on `at`; what lies outside the
/// target is left out. Rows are copied whole, each once.
void copyPixels(TBitmap& target, Point at, const TBitmap& source);
/// The same for the part `from` of the source.
void copyPixels(TBitmap& target, Point at, const TBitmap& source, const Rect& from);

/// Copies all pixels into another picture of the same size and any format; a new alpha is 255, a lost one is dropped
/// without blending.
void convertPixels(TBitmap& target, const TBitmap& source);

/// Whether both have the same size and the same colours and alphas, whatever their formats.
bool samePixels(const TBitmap& a, const TBitmap& b);

}  // namespace glimmer
