// Windows only: the interlace effect against the system calls by which it is defined.

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>

#include "imaging/graphutils.h"
#include "support/pictures.h"

namespace glimmer {
namespace {

/// A device context on a bitmap whose memory is ours to look at.
class Canvas {
public:
    Canvas(int32_t width, int32_t height, PixelFormat format) : dc_(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = static_cast<WORD>(format);
        bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits_, nullptr, 0);
        old_ = SelectObject(dc_, bitmap_);
    }
    ~Canvas() {
        SelectObject(dc_, old_);
        DeleteObject(bitmap_);
        DeleteDC(dc_);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    [[nodiscard]] HDC dc() const { return dc_; }
    [[nodiscard]] uint8_t* bits() const { return static_cast<uint8_t*>(bits_); }

private:
    HDC dc_;
    HBITMAP bitmap_;
    HGDIOBJ old_;
    void* bits_ = nullptr;
};

TEST(Interlace, GivesTheBytesOfTheSystemsAlphaBlend) {
    constexpr int32_t width = 258;
    constexpr int32_t height = 9;
    for (const PixelFormat format : {PixelFormat::Bgr24, PixelFormat::Bgra32}) {
        TBitmap picture = test::noise(width, height, format, 21);
        for (int32_t y = 0; y < 4; ++y)
            for (uint32_t x = 0; x < 256; ++x) picture.setPixel(static_cast<int32_t>(x), y, rgb(x, 255 - x, x ^ 85U));
        const Canvas target(width, height, format);
        std::memcpy(target.bits(), picture.bytes().data(), picture.byteCount());

        const Canvas overlay(width, height, format);
        const RECT all{0, 0, width, height};
        HBRUSH brush = CreateSolidBrush(0xC0C0C0);
        FillRect(overlay.dc(), &all, brush);
        DeleteObject(brush);
        HGDIOBJ oldPen = SelectObject(overlay.dc(), GetStockObject(BLACK_PEN));
        for (int y = 0; y < height; y += 2) {
            MoveToEx(overlay.dc(), 0, y, nullptr);
            LineTo(overlay.dc(), width, y);
        }
        SelectObject(overlay.dc(), oldPen);
        const BLENDFUNCTION blend{AC_SRC_OVER, 0, 64, 0};
        ASSERT_TRUE(AlphaBlend(target.dc(), 0, 0, width, height, overlay.dc(), 0, 0, width, height, blend));
        GdiFlush();

        interlace(picture);
        for (int32_t y = 0; y < height; ++y)
            for (int32_t x = 0; x < width; ++x)
                for (size_t c = 0; c < 3; ++c) {
                    const size_t at = static_cast<size_t>(x) * picture.bytesPerPixel() + c;
                    ASSERT_EQ(picture.row(y)[at], target.bits()[picture.stride() * static_cast<size_t>(y) + at])
                        << static_cast<int>(format) << " bits, " << x << ' ' << y;
                }
    }
}

}  // namespace
}  // namespace glimmer
