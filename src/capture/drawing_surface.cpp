#include "capture/drawing_surface.h"

#include <windows.h>

namespace glimmer {

namespace {

/// Drawing by the system leaves the fourth byte of a pixel 0 or as it comes.
void makeOpaque(TBitmap& bitmap) {
    for (int32_t y = 0; y < bitmap.height(); ++y) {
        uint8_t* row = bitmap.row(y);
        for (size_t x = 0; x < static_cast<size_t>(bitmap.width()); ++x) row[x * 4 + 3] = 255;
    }
}

}  // namespace

/// The pixels are the system's; they live as long as the bitmap handle.
class DrawingSurface::Section : public PixelMemory {
public:
    Section() = default;
    ~Section() override {
        releaseContext();
        if (bitmap_ != nullptr) DeleteObject(bitmap_);
    }
    Section(const Section&) = delete;
    Section& operator=(const Section&) = delete;
    Section(Section&&) = delete;
    Section& operator=(Section&&) = delete;

    bool open(int32_t width, int32_t height) {
        BITMAPINFO info = {};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;  // top-down
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        context_ = CreateCompatibleDC(nullptr);
        void* bits = nullptr;
        bitmap_ = CreateDIBSection(context_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        if (context_ == nullptr || bitmap_ == nullptr || bits == nullptr) return false;
        previous_ = SelectObject(context_, bitmap_);
        bits_ = static_cast<uint8_t*>(bits);
        size_ = {width, height};
        return true;
    }

    void releaseContext() {
        if (context_ == nullptr) return;
        GdiFlush();
        if (previous_ != nullptr) SelectObject(context_, previous_);
        DeleteDC(context_);
        context_ = nullptr;
    }

    [[nodiscard]] uint8_t* data() const override { return bits_; }
    [[nodiscard]] HDC context() const { return context_; }
    [[nodiscard]] Size size() const { return size_; }

private:
    HDC context_ = nullptr;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ previous_ = nullptr;
    uint8_t* bits_ = nullptr;
    Size size_;
};

DrawingSurface::DrawingSurface(std::unique_ptr<Section> section) : section_(std::move(section)) {}
DrawingSurface::~DrawingSurface() = default;
DrawingSurface::DrawingSurface(DrawingSurface&& other) noexcept = default;
DrawingSurface& DrawingSurface::operator=(DrawingSurface&& other) noexcept = default;

Result<DrawingSurface> DrawingSurface::create(int32_t width, int32_t height) {
    if (const Status fits = TBitmap::check(width, height, PixelFormat::Bgra32); !fits) return fits.failure();
    auto section = std::make_unique<Section>();
    if (!section->open(width, height)) {
        return Failure{"There is not enough memory for a picture of " + std::to_string(width) + " x " +
                       std::to_string(height) + " pixels."};
    }
    return DrawingSurface(std::move(section));
}

void* DrawingSurface::deviceContext() const { return section_->context(); }
Size DrawingSurface::size() const { return section_->size(); }

std::span<uint32_t> DrawingSurface::pixels() const {
    GdiFlush();
    const Size size = section_->size();
    return {reinterpret_cast<uint32_t*>(section_->data()),
            static_cast<size_t>(size.width) * static_cast<size_t>(size.height)};
}

TBitmap DrawingSurface::takeBitmap() && {
    section_->releaseContext();
    const Size size = section_->size();
    TBitmap bitmap = TBitmap::adopt(std::move(section_), size.width, size.height, PixelFormat::Bgra32);
    makeOpaque(bitmap);
    return bitmap;
}

}  // namespace glimmer
