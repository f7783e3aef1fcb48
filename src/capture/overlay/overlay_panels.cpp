#include "capture/overlay/overlay_panels.h"

#include <windows.h>

#include <algorithm>
#include <memory>

#include "capture/overlay/magnifier.h"
#include "common/wide_text.h"

namespace glimmer {

namespace {

constexpr int usualDpi = 96;
constexpr COLORREF ground = RGB(32, 34, 37);
constexpr COLORREF ink = RGB(240, 240, 240);
constexpr COLORREF soft = RGB(170, 175, 180);

int scaled(int pixels, int dotsPerInch) { return MulDiv(pixels, dotsPerInch, usualDpi); }

/// Text of the system's face, as long as the object lives.
class Pen {
public:
    Pen(HDC context, int dotsPerInch, bool bold = false)
        : context_(context),
          font_(CreateFontW(-scaled(12, dotsPerInch), 0, 0, 0, bold ? FW_SEMIBOLD : FW_NORMAL, FALSE, FALSE, FALSE,
                            DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                            DEFAULT_PITCH | FF_SWISS, L"Segoe UI")),
          before_(SelectObject(context, font_)) {
        SetBkMode(context, TRANSPARENT);
    }
    ~Pen() {
        SelectObject(context_, before_);
        DeleteObject(font_);
    }
    Pen(const Pen&) = delete;
    Pen& operator=(const Pen&) = delete;
    Pen(Pen&&) = delete;
    Pen& operator=(Pen&&) = delete;

    void write(int x, int y, const std::string& text, COLORREF colour) const {
        const std::wstring wide = toWide(text);
        SetTextColor(context_, colour);
        TextOutW(context_, x, y, wide.c_str(), static_cast<int>(wide.size()));
    }
    [[nodiscard]] SIZE measure(const std::string& text) const {
        const std::wstring wide = toWide(text);
        SIZE size{};
        GetTextExtentPoint32W(context_, wide.c_str(), static_cast<int>(wide.size()), &size);
        return size;
    }

private:
    HDC context_;
    HFONT font_;
    HGDIOBJ before_;
};

void fill(HDC context, const Rect& area, COLORREF colour) {
    const RECT system{area.left, area.top, area.right, area.bottom};
    SetDCBrushColor(context, colour);
    FillRect(context, &system, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

/// Beside the pointer, on the other side where the monitor ends.
Point beside(Point pointer, Size size, const Rect& monitor, int distance) {
    Point corner{pointer.x + distance, pointer.y + distance};
    if (corner.x + size.width > monitor.right) corner.x = pointer.x - distance - size.width;
    if (corner.y + size.height > monitor.bottom) corner.y = pointer.y - distance - size.height;
    return {std::max(corner.x, monitor.left), std::max(corner.y, monitor.top)};
}

Colour colourAt(const FrozenScreen& screen, Point at) {
    const Point inside{at.x - screen.origin().x, at.y - screen.origin().y};
    return screen.picture().bounds().contains(inside) ? screen.picture().pixel(inside.x, inside.y) : Colour{0};
}

}  // namespace

bool OverlayPanel::prepare(Size size) {
    if (surface_ && surface_->size() == size) return true;
    surface_.reset();
    Result<DrawingSurface> made = DrawingSurface::create(size.width, size.height);
    if (made) surface_.emplace(made.take());
    return surface_.has_value();
}

void MagnifierPanel::show(const FrozenScreen& screen, const AreaSelection& selection, const Rect& monitor,
                          int dotsPerInch) {
    Magnifier magnifier;
    magnifier.cell = scaled(magnifier.cell, dotsPerInch);
    const int edge = scaled(1, dotsPerInch);
    const int line = scaled(18, dotsPerInch);
    const int margin = scaled(6, dotsPerInch);
    const int side = magnifier.side();
    const Size size{side + 2 * edge, side + 2 * edge + 3 * line + margin};
    if (!prepare(size)) return hide();
    const auto context = static_cast<HDC>(surface_->deviceContext());
    // The core paints into a bitmap of its own; the figures are written below it.
    Result<TBitmap> enlarged = TBitmap::create(side, side, PixelFormat::Bgra32);
    if (!enlarged) return hide();
    magnifier.paint(*enlarged, {0, 0}, screen.picture(), screen.origin(), selection.pointer());
    fill(context, {0, 0, size.width, size.height}, ground);
    const std::span<uint32_t> pixels = surface_->pixels();
    for (int32_t y = 0; y < side; ++y) {
        const auto* row = reinterpret_cast<const uint32_t*>(enlarged->row(y));
        std::copy(row, row + side, pixels.begin() + static_cast<std::ptrdiff_t>(y + edge) * size.width + edge);
    }
    const Pen pen(context, dotsPerInch);
    const Rect area = selection.area();
    const Colour colour = colourAt(screen, selection.pointer());
    int y = side + 2 * edge + margin / 2;
    const std::string sizeLine =
        !selection.typed().empty() ? selection.typed() + "_" : sizeText({area.width(), area.height()});
    pen.write(margin, y, sizeLine, ink);
    pen.write(margin, y += line, placeText(selection.pointer()), soft);
    y += line;
    const int swatch = line - 2 * scaled(3, dotsPerInch);
    fill(context, {margin, y + scaled(3, dotsPerInch), margin + swatch, y + scaled(3, dotsPerInch) + swatch}, soft);
    fill(context,
         Rect{margin, y + scaled(3, dotsPerInch), margin + swatch, y + scaled(3, dotsPerInch) + swatch}.inflated(-1),
         colour);
    pen.write(margin + swatch + margin, y, colourText(colour), soft);
    putAt(beside(selection.pointer(), size, monitor, scaled(24, dotsPerInch)));
}

void HintPanel::show(const Rect& monitor, Point pointer, int dotsPerInch) {
    static constexpr struct {
        const char* key;
        const char* what;
    } lines[] = {
        {"Drag", "takes an area: Space moves it, Shift keeps it square"},
        {"Click, Enter", "takes what is framed; the wheel goes to the part around it or inside"},
        {"Arrows", "move the pointer by one pixel, with Shift by ten"},
        {"800x600", "typed: an area of that size"},
        {"Ctrl", "held at the release: the area can still be changed, Enter takes it"},
        {"C", "copies the colour under the pointer"},
        {"Esc", "or the right button leaves"},
        {"F1", "shows or hides this hint"},
    };
    const int margin = scaled(12, dotsPerInch);
    const int row = scaled(19, dotsPerInch);
    const int keys = scaled(92, dotsPerInch);
    const Size size{scaled(490, dotsPerInch), static_cast<int32_t>(std::size(lines)) * row + 2 * margin};
    if (!prepare(size)) return hide();
    const auto context = static_cast<HDC>(surface_->deviceContext());
    fill(context, {0, 0, size.width, size.height}, soft);
    fill(context, Rect{0, 0, size.width, size.height}.inflated(-1), ground);
    int y = margin;
    for (const auto& one : lines) {
        Pen(context, dotsPerInch, true).write(margin, y, one.key, ink);
        Pen(context, dotsPerInch).write(margin + keys, y, one.what, soft);
        y += row;
    }
    const int32_t x = middle(monitor.left, monitor.right) - size.width / 2;
    const int distance = scaled(40, dotsPerInch);
    const Rect above{x, monitor.top + distance, x + size.width, monitor.top + distance + size.height};
    const bool inTheWay = above.inflated(distance).contains(pointer);
    putAt({x, inTheWay ? monitor.bottom - distance - size.height : above.top});
}

}  // namespace glimmer
