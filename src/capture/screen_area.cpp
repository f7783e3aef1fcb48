#include "capture/screen_area.h"

#include <windows.h>

#include <memory>
#include <vector>

#include "capture/screen_access.h"
#include "common/monitors.h"

namespace glimmer {

namespace {

struct ScreenDc {
    ScreenDc() : dc(GetDC(nullptr)) {}
    ~ScreenDc() { ReleaseDC(nullptr, dc); }
    ScreenDc(const ScreenDc&) = delete;
    ScreenDc& operator=(const ScreenDc&) = delete;
    ScreenDc(ScreenDc&&) = delete;
    ScreenDc& operator=(ScreenDc&&) = delete;
    HDC dc;
};

struct DeleteDcCall {
    void operator()(HDC dc) const { DeleteDC(dc); }
};
struct DeleteObjectCall {
    void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};

}  // namespace

Rect wholeScreen() {
    const int left = GetSystemMetrics(SM_XVIRTUALSCREEN);
    const int top = GetSystemMetrics(SM_YVIRTUALSCREEN);
    return {left, top, left + GetSystemMetrics(SM_CXVIRTUALSCREEN), top + GetSystemMetrics(SM_CYVIRTUALSCREEN)};
}

Rect captureArea(int32_t monitor) {
    const std::vector<Monitor> all = monitors();
    if (monitor < 0 || static_cast<size_t>(monitor) >= all.size()) return wholeScreen();
    return all[static_cast<size_t>(monitor)].bounds;
}

Result<TBitmap> grabScreen(const Rect& area, bool layered) {
    Result<TBitmap> picture = TBitmap::create(area.width(), area.height(), PixelFormat::Bgra32);
    if (!picture) return picture;
    const ScreenDc screen;
    const std::unique_ptr<std::remove_pointer_t<HDC>, DeleteDcCall> memory(CreateCompatibleDC(screen.dc));
    const std::unique_ptr<std::remove_pointer_t<HBITMAP>, DeleteObjectCall> copy(
        CreateCompatibleBitmap(screen.dc, area.width(), area.height()));
    if (!memory || !copy) return Failure{"The screen cannot be read."};
    HGDIOBJ const before = SelectObject(memory.get(), copy.get());
    const BOOL copied = BitBlt(memory.get(), 0, 0, area.width(), area.height(), screen.dc, area.left, area.top,
                               layered ? SRCCOPY | CAPTUREBLT : SRCCOPY);
    SelectObject(memory.get(), before);
    BITMAPINFO format{};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = area.width();
    format.bmiHeader.biHeight = -area.height();  // from the top
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    const bool read = copied != FALSE && GetDIBits(screen.dc, copy.get(), 0, static_cast<UINT>(area.height()),
                                                   picture->bytes().data(), &format, DIB_RGB_COLORS) == area.height();
    if (!read || allBlack(*picture)) {
        const std::string why = whyScreenIsDark();
        if (!why.empty()) return Failure{why};
        if (!read) return Failure{"The screen cannot be read."};
    }
    // The screen has no alpha; the fourth byte is of no meaning.
    std::span<uint8_t> bytes = picture->bytes();
    for (size_t i = 3; i < bytes.size(); i += 4) bytes[i] = 255;
    return picture;
}

bool allBlack(const TBitmap& picture) {
    const std::span<const uint8_t> bytes = picture.bytes();
    for (size_t i = 0; i < bytes.size(); i += 4)
        if ((bytes[i] | bytes[i + 1] | bytes[i + 2]) != 0) return false;
    return true;
}

}  // namespace glimmer
