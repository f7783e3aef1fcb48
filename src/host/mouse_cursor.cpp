#include "host/mouse_cursor.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

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
    const std::optional<CursorShape> shape = shapeOf(info.hCursor);
    if (!shape) return std::nullopt;
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
