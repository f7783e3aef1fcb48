#include "common/bitmap.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include "common/row_conversion.h"

namespace glimmer {

namespace {

/// calloc takes large blocks from the system already zeroed, so a fresh picture costs no pass over its memory.
class OwnMemory final : public PixelMemory {
public:
    explicit OwnMemory(size_t count) : data_(static_cast<uint8_t*>(std::calloc(count, 1))) {}
    ~OwnMemory() override { std::free(data_); }
    OwnMemory(const OwnMemory&) = delete;
    OwnMemory& operator=(const OwnMemory&) = delete;
    OwnMemory(OwnMemory&&) = delete;
    OwnMemory& operator=(OwnMemory&&) = delete;
    [[nodiscard]] uint8_t* data() const override { return data_; }

private:
    uint8_t* data_;
};

PixelAllocator allocate = heapPixelMemory;

std::string describe(int64_t width, int64_t height) { return std::to_string(width) + " x " + std::to_string(height); }

}  // namespace

std::unique_ptr<PixelMemory> heapPixelMemory(size_t count) {
    auto memory = std::make_unique<OwnMemory>(count);
    if (memory->data() == nullptr) return nullptr;
    return memory;
}

void setPixelAllocator(PixelAllocator allocator) { allocate = allocator != nullptr ? allocator : heapPixelMemory; }

Status TBitmap::check(int64_t width, int64_t height, PixelFormat format) {
    if (width < 1 || height < 1) return Failure{"A picture cannot be " + describe(width, height) + " pixels large."};
    if (width > maxSide || height > maxSide)
        return Failure{"A picture of " + describe(width, height) + " pixels is too large."};
    const uint64_t count =
        static_cast<uint64_t>(stride(static_cast<int32_t>(width), format)) * static_cast<uint64_t>(height);
    if (count > maxBytes) return Failure{"A picture of " + describe(width, height) + " pixels is too large."};
    return {};
}

Result<TBitmap> TBitmap::create(int32_t width, int32_t height, PixelFormat format) {
    if (Status fits = check(width, height, format); !fits) return fits.failure();
    std::unique_ptr<PixelMemory> memory = allocate(stride(width, format) * static_cast<size_t>(height));
    if (memory == nullptr)
        return Failure{"There is not enough memory for a picture of " + describe(width, height) + " pixels."};
    return adopt(std::move(memory), width, height, format);
}

TBitmap TBitmap::adopt(std::unique_ptr<PixelMemory> memory, int32_t width, int32_t height, PixelFormat format) {
    TBitmap bitmap;
    bitmap.data_ = memory->data();
    bitmap.memory_ = std::move(memory);
    bitmap.width_ = width;
    bitmap.height_ = height;
    bitmap.stride_ = stride(width, format);
    bitmap.format_ = format;
    return bitmap;
}

bool TBitmap::park() {
    if (memory_ == nullptr || !memory_->park()) return parked();
    data_ = nullptr;
    return true;
}

Status TBitmap::wake() {
    if (!parked()) return {};
    data_ = memory_->wake();
    if (data_ == nullptr)
        return Failure{"There is not enough memory for a picture of " + describe(width_, height_) + " pixels."};
    return {};
}

Result<TBitmap> TBitmap::clone() const {
    if (empty()) return TBitmap();
    return cropped(bounds());
}

Result<TBitmap> TBitmap::cropped(const Rect& area) const {
    const Rect part = area.intersected(bounds());
    if (part.empty()) return Failure{"The area lies outside the picture."};
    Result<TBitmap> copy = create(part.width(), part.height(), format_);
    if (copy) copyPixels(*copy, {0, 0}, *this, part);
    return copy;
}

Result<TBitmap> TBitmap::converted(PixelFormat format) const {
    if (format == format_) return clone();
    Result<TBitmap> result = create(width_, height_, format);
    if (!result) return result;
    convertPixels(*result, *this);
    return result;
}

Colour TBitmap::pixel(int32_t x, int32_t y) const {
    const uint8_t* p = row(y) + static_cast<size_t>(x) * bytesPerPixel();
    return rgb(p[2], p[1], p[0]);
}

uint8_t TBitmap::alpha(int32_t x, int32_t y) const {
    return format_ == PixelFormat::Bgr24 ? uint8_t{255} : row(y)[static_cast<size_t>(x) * 4 + 3];
}

void TBitmap::setPixel(int32_t x, int32_t y, Colour colour) { fill({x, y, x + 1, y + 1}, colour); }

void TBitmap::fill(const Rect& area, Colour colour) {
    const Rect part = area.intersected(bounds());
    if (part.empty()) return;
    const uint8_t value[4] = {blueOf(colour), greenOf(colour), redOf(colour), 255};
    const size_t step = bytesPerPixel();
    const size_t length = static_cast<size_t>(part.width()) * step;
    uint8_t* first = row(part.top) + static_cast<size_t>(part.left) * step;
    for (size_t i = 0; i < length; i += step) std::memcpy(first + i, value, step);
    for (int32_t y = part.top + 1; y < part.bottom; ++y)
        std::memcpy(row(y) + static_cast<size_t>(part.left) * step, first, length);
}

bool TBitmap::hasTransparency() const {
    if (format_ == PixelFormat::Bgr24) return false;
    for (int32_t y = 0; y < height_; ++y) {
        const uint8_t* p = row(y) + 3;
        uint8_t all = 255;
        for (int32_t x = 0; x < width_; ++x) all &= p[static_cast<size_t>(x) * 4];
        if (all != 255) return true;
    }
    return false;
}

void copyPixels(TBitmap& target, Point at, const TBitmap& source) { copyPixels(target, at, source, source.bounds()); }

void copyPixels(TBitmap& target, Point at, const TBitmap& source, const Rect& from) {
    // In 64 bits: a tile may be asked for at any 32-bit place.
    const Rect part = from.intersected(source.bounds());
    if (part.empty()) return;
    const int64_t dx = static_cast<int64_t>(at.x) + (part.left - from.left) - part.left;
    const int64_t dy = static_cast<int64_t>(at.y) + (part.top - from.top) - part.top;
    const int64_t left = std::max<int64_t>(part.left, -dx);
    const int64_t top = std::max<int64_t>(part.top, -dy);
    const int64_t right = std::min<int64_t>(part.right, target.width() - dx);
    const int64_t bottom = std::min<int64_t>(part.bottom, target.height() - dy);
    if (right <= left || bottom <= top) return;
    const size_t step = source.bytesPerPixel();
    const size_t length = static_cast<size_t>(right - left) * step;
    for (int64_t y = top; y < bottom; ++y)
        std::memmove(target.row(static_cast<int32_t>(y + dy)) + static_cast<size_t>(left + dx) * step,
                     source.row(static_cast<int32_t>(y)) + static_cast<size_t>(left) * step, length);
}

void convertPixels(TBitmap& target, const TBitmap& source) {
    const auto count = static_cast<size_t>(source.width());
    for (int32_t y = 0; y < source.height(); ++y) {
        if (target.format() == source.format())
            std::memcpy(target.row(y), source.row(y), count * source.bytesPerPixel());
        else if (target.format() == PixelFormat::Bgra32)
            widenRow(target.row(y), source.row(y), count);
        else
            narrowRow(target.row(y), source.row(y), count);
    }
}

bool samePixels(const TBitmap& a, const TBitmap& b) {
    if (a.size() != b.size()) return false;
    for (int32_t y = 0; y < a.height(); ++y) {
        if (a.format() == b.format()) {
            if (std::memcmp(a.row(y), b.row(y), static_cast<size_t>(a.width()) * a.bytesPerPixel()) != 0) return false;
            continue;
        }
        for (int32_t x = 0; x < a.width(); ++x)
            if (a.pixel(x, y) != b.pixel(x, y) || a.alpha(x, y) != b.alpha(x, y)) return false;
    }
    return true;
}

}  // namespace glimmer
