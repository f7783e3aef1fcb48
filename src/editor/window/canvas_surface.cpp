#include "editor/window/canvas_surface.h"

#include <windows.h>

#include <utility>

namespace glimmer {

namespace {

class SectionMemory final : public PixelMemory {
public:
    explicit SectionMemory(void* data) : data_(static_cast<uint8_t*>(data)) {}
    [[nodiscard]] uint8_t* data() const override { return data_; }

private:
    uint8_t* data_;  // the section's owner frees it
};

}  // namespace

CanvasSurface::~CanvasSurface() { release(); }

void CanvasSurface::release() {
    bitmap_ = TBitmap();
    if (memoryContext_ != nullptr) {
        SelectObject(static_cast<HDC>(memoryContext_), formerBitmap_);
        DeleteDC(static_cast<HDC>(memoryContext_));
    }
    if (section_ != nullptr) DeleteObject(section_);
    memoryContext_ = section_ = formerBitmap_ = nullptr;
}

bool CanvasSurface::ensure(Size size) {
    if (bitmap_.width() >= size.width && bitmap_.height() >= size.height) return true;
    release();
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size.width;
    info.bmiHeader.biHeight = -size.height;  // top-down
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    section_ = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (section_ == nullptr) return false;
    memoryContext_ = CreateCompatibleDC(nullptr);
    if (memoryContext_ == nullptr) {
        release();
        return false;
    }
    formerBitmap_ = SelectObject(static_cast<HDC>(memoryContext_), section_);
    bitmap_ = TBitmap::adopt(std::make_unique<SectionMemory>(bits), size.width, size.height, PixelFormat::Bgra32);
    return true;
}

void CanvasSurface::copyTo(void* deviceContext, const Rect& area) const {
    // Drawing with GDI is queued; nothing of it is pending on a section that only we write.
    BitBlt(static_cast<HDC>(deviceContext), area.left, area.top, area.width(), area.height(),
           static_cast<HDC>(memoryContext_), area.left, area.top, SRCCOPY);
}

}  // namespace glimmer
