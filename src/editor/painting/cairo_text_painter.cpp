#include "editor/painting/cairo_text_painter.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "common/text.h"
#include "editor/painting/cairo_canvas.h"

namespace glimmer {

namespace {

/// More lines than any label shows; bounds the work for hostile texts.
constexpr size_t maxLines = 4096;

/// What cairo takes: well-formed UTF-8 without control characters. Its functions stop at the first byte 0 and
/// refuse everything for good after an unpaired surrogate.
std::string printable(std::string_view text) {
    std::u16string units = toUtf16(text);
    for (size_t i = 0; i < units.size(); ++i) {
        const bool high = units[i] >= 0xD800 && units[i] <= 0xDBFF;
        const bool low = units[i] >= 0xDC00 && units[i] <= 0xDFFF;
        if (high && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] <= 0xDFFF) {
            ++i;
        } else if (high || low) {
            units[i] = 0xFFFD;
        } else if (units[i] < u' ' && units[i] != u'\n') {
            units[i] = u' ';
        }
    }
    return toUtf8(units);
}

struct Line {
    std::string text;
    double width = 0;
};

struct Layout {
    std::vector<Line> lines;
    double width = 0;
    int32_t lineHeight = 0;
    double ascent = 0;
};

/// Length in bytes of the first code point.
size_t codeLength(std::string_view text) {
    size_t length = 1;
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) ++length;
    return length;
}

class Breaker {
public:
    Breaker(cairo_t* cr, int32_t width) : cr_(cr), width_(width) {}

    [[nodiscard]] double widthOf(const std::string& text) const {
        cairo_text_extents_t extents;
        cairo_text_extents(cr_, text.c_str(), &extents);
        return extents.x_advance;
    }

    void paragraph(std::string_view text, std::vector<Line>& lines) const {
        std::string line;
        for (size_t at = 0; at < text.size() && lines.size() < maxLines;) {
            // A word with the blanks behind it; the blanks may hang over the edge.
            const size_t wordEnd = std::min(text.find(' ', at), text.size());
            const size_t end = std::min(text.find_first_not_of(' ', wordEnd), text.size());
            const std::string word(text.substr(at, wordEnd - at));
            if (fits(line + word)) {
                line.append(text.substr(at, end - at));
                at = end;
            } else if (!line.empty()) {
                push(line, lines);
            } else {
                at += takeLetters(text.substr(at), line);
                push(line, lines);
            }
        }
        push(line, lines);
    }

private:
    [[nodiscard]] bool fits(const std::string& text) const { return width_ <= 0 || widthOf(text) <= width_; }

    /// As many code points as fit, at least one; answers their bytes.
    size_t takeLetters(std::string_view text, std::string& line) const {
        size_t taken = codeLength(text);
        while (taken < text.size() && text[taken] != ' ') {
            const size_t next = taken + codeLength(text.substr(taken));
            if (!fits(std::string(text.substr(0, next)))) break;
            taken = next;
        }
        line = text.substr(0, taken);
        return taken;
    }

    void push(std::string& line, std::vector<Line>& lines) const {
        const size_t end = line.find_last_not_of(' ');
        const std::string shown = end == std::string::npos ? std::string() : line.substr(0, end + 1);
        lines.push_back({shown, widthOf(shown)});
        line.clear();
    }

    cairo_t* cr_;
    int32_t width_;
};

void setFont(cairo_t* cr, const TTextSettings& font) {
    cairo_select_font_face(cr, printable(font.fontName).c_str(),
                           font.italic ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL,
                           font.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, clampFontSize(font.fontSize) * 96.0 / 72.0);
}

Layout layOut(cairo_t* cr, const TTextSettings& font, const std::string& text, int32_t width) {
    setFont(cr, font);
    cairo_font_extents_t extents;
    cairo_font_extents(cr, &extents);
    Layout layout;
    layout.lineHeight = std::max(1, static_cast<int32_t>(std::ceil(extents.ascent + extents.descent)));
    layout.ascent = std::ceil(extents.ascent);
    const std::string clean = printable(text);
    const Breaker breaker(cr, width);
    for (size_t at = 0; at <= clean.size() && layout.lines.size() < maxLines;) {
        const size_t end = std::min(clean.find('\n', at), clean.size());
        breaker.paragraph(std::string_view(clean).substr(at, end - at), layout.lines);
        at = end + 1;
    }
    for (const Line& line : layout.lines) layout.width = std::max(layout.width, line.width);
    return layout;
}

}  // namespace

struct CairoTextPainter::Impl {
    CairoSurface surface{cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1)};
    CairoContext context{cairo_create(surface.get())};
};

CairoTextPainter::CairoTextPainter() : impl_(std::make_unique<Impl>()) {}
CairoTextPainter::~CairoTextPainter() = default;

Size CairoTextPainter::measure(const TTextSettings& font, const std::string& text, int32_t width) {
    const Layout layout = layOut(impl_->context.get(), font, text, width);
    return {static_cast<int32_t>(std::ceil(layout.width)),
            layout.lineHeight * static_cast<int32_t>(layout.lines.size())};
}

TextMask CairoTextPainter::render(const TTextSettings& font, const std::string& text, Size area) {
    TextMask mask{area, std::vector<uint8_t>(static_cast<size_t>(area.width) * static_cast<size_t>(area.height))};
    const CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_A8, area.width, area.height));
    const CairoContext context(cairo_create(surface.get()));
    cairo_t* cr = context.get();
    if (cairo_status(cr) != CAIRO_STATUS_SUCCESS) return mask;
    const Layout layout = layOut(cr, font, text, area.width);
    int32_t top = 0;
    for (const Line& line : layout.lines) {
        if (top >= area.height) break;
        const double spare = area.width - line.width;
        const double left = font.alignment == TextAlignment::Left     ? 0
                            : font.alignment == TextAlignment::Centre ? std::floor(spare / 2)
                                                                      : std::floor(spare);
        cairo_move_to(cr, left, top + layout.ascent);
        cairo_show_text(cr, line.text.c_str());
        if (font.underlined) {
            const double thick = std::max(1.0, std::floor(layout.lineHeight / 14.0));
            cairo_rectangle(cr, left, top + layout.ascent + thick, std::ceil(line.width), thick);
            cairo_fill(cr);
        }
        top += layout.lineHeight;
    }
    cairo_surface_flush(surface.get());
    const uint8_t* row = cairo_image_surface_get_data(surface.get());
    const auto stride = static_cast<size_t>(cairo_image_surface_get_stride(surface.get()));
    for (size_t y = 0; row != nullptr && y < static_cast<size_t>(area.height); ++y, row += stride)
        std::copy_n(row, area.width, mask.coverage.begin() + static_cast<std::ptrdiff_t>(y) * area.width);
    return mask;
}

}  // namespace glimmer
