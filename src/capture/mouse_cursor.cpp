#include "capture/mouse_cursor.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include "common/monitors.h"

namespace glimmer {

namespace {

struct DeleteObjectCall {
    void operator()(void* object) const { DeleteObject(object); }
};
using GdiObject = std::unique_ptr<void, DeleteObjectCall>;

struct CursorShape {
    Size size;
    Point hotspot;
};

std::optional<CursorShape> shapeOf(HCURSOR cursor) {
    ICONINFO info{};
    if (GetIconInfo(cursor, &info) == FALSE) return std::nullopt;
    const GdiObject mask(info.hbmMask);
    const GdiObject colour(info.hbmColor);
    BITMAP measures{};
    if (GetObjectW(colour ? info.hbmColor : info.hbmMask, sizeof measures, &measures) == 0) return std::nullopt;
    // Without colours the two masks stand one above the other.
    const int32_t height = colour ? measures.bmHeight : measures.bmHeight / 2;
    if (measures.bmWidth <= 0 || height <= 0) return std::nullopt;
    return CursorShape{{measures.bmWidth, height},
                       {static_cast<int32_t>(info.xHotspot), static_cast<int32_t>(info.yHotspot)}};
}

/// Side in pixels of the system's own pointers on the monitor at that place: they grow with its scaling, and as the
/// user has set it for all programs.
int32_t sideOfPointers(const POINT& at) {
    constexpr DWORD usualBase = 32;
    constexpr DWORD largestBase = 256;
    DWORD base = 0;
    DWORD bytes = sizeof base;
    if (RegGetValueW(HKEY_CURRENT_USER, L"Control Panel\\Cursors", L"CursorBaseSize", RRF_RT_REG_DWORD, nullptr, &base,
                     &bytes) != ERROR_SUCCESS ||
        base < usualBase || base > largestBase)
        base = usualBase;
    return systemMetricAt({at.x, at.y}, SM_CXCURSOR) * static_cast<int32_t>(base) / static_cast<int32_t>(usualBase);
}

/// As the screen shows it: the system enlarges its pointers and tells the small one. What a program has drawn in
/// another size stays as it is.
CursorShape enlarged(const CursorShape& shape, const POINT& at) {
    constexpr int32_t drawnSide = 32;
    const int32_t told = shape.size.width;
    const int32_t side = sideOfPointers(at);
    if ((told != drawnSide && told != GetSystemMetrics(SM_CXCURSOR)) || told != shape.size.height || side <= told)
        return shape;
    return {{side, side}, {shape.hotspot.x * side / told, shape.hotspot.y * side / told}};
}

/// The pointer painted on one grey, four bytes a pixel.
std::vector<uint8_t> paintedOn(uint8_t grey, HCURSOR cursor, Size size) {
    BITMAPINFO format{};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = size.width;
    format.bmiHeader.biHeight = -size.height;  // from the top
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const GdiObject section(CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &bits, nullptr, 0));
    HDC dc = CreateCompatibleDC(nullptr);
    std::vector<uint8_t> pixels;
    if (section && dc != nullptr) {
        const size_t count = static_cast<size_t>(size.width) * static_cast<size_t>(size.height) * 4;
        auto* first = static_cast<uint8_t*>(bits);
        std::fill(first, first + count, grey);
        HGDIOBJ before = SelectObject(dc, section.get());
        if (DrawIconEx(dc, 0, 0, cursor, size.width, size.height, 0, nullptr, DI_NORMAL) != FALSE) {
            GdiFlush();
            pixels.assign(first, first + count);
        }
        SelectObject(dc, before);
    }
    DeleteDC(dc);
    return pixels;
}

}  // namespace

std::optional<MouseCursor> visibleMouseCursor() {
    CURSORINFO info{};
    info.cbSize = sizeof info;
    if (GetCursorInfo(&info) == FALSE || (info.flags & CURSOR_SHOWING) == 0 || info.hCursor == nullptr)
        return std::nullopt;
    std::optional<CursorShape> shape = shapeOf(info.hCursor);
    if (!shape) return std::nullopt;
    shape = enlarged(*shape, info.ptScreenPos);
    const std::vector<uint8_t> onBlack = paintedOn(0, info.hCursor, shape->size);
    const std::vector<uint8_t> onWhite = paintedOn(255, info.hCursor, shape->size);
    Result<TBitmap> picture = TBitmap::create(shape->size.width, shape->size.height, PixelFormat::Bgra32);
    if (!picture || onBlack.empty() || onWhite.size() != onBlack.size()) return std::nullopt;
    // On black a pixel is colour * alpha, on white 255 * (1 - alpha) more.
    std::span<uint8_t> out = picture->bytes();
    for (size_t i = 0; i + 3 < std::min(out.size(), onBlack.size()); i += 4) {
        const int green = 1;
        const int alpha = 255 - (onWhite[i + green] - onBlack[i + green]);
        const bool turnsRound = alpha > 255;
        for (size_t channel = 0; channel < 3; ++channel)
            out[i + channel] = alpha <= 0 || turnsRound
                                   ? uint8_t{0}
                                   : static_cast<uint8_t>(std::min(255, onBlack[i + channel] * 255 / alpha));
        out[i + 3] = static_cast<uint8_t>(std::clamp(alpha, 0, 255));
    }
    return MouseCursor{picture.take(), {info.ptScreenPos.x - shape->hotspot.x, info.ptScreenPos.y - shape->hotspot.y}};
}

}  // namespace glimmer
