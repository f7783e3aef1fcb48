#include "output/print/foot_line.h"

#include <algorithm>
#include <cstdio>

#include "common/text.h"

namespace glimmer {

namespace {

constexpr Colour ink = 0;
constexpr const char* ellipsis = "\xE2\x80\xA6";

/// The largest font whose line is not higher, within the sizes that fonts have here.
TTextSettings fontFor(int32_t height, TextPainter& text) {
    TTextSettings font;
    font.fontSize = 1;
    int32_t above = maxFontSize + 1;
    while (above - font.fontSize > 1) {
        TTextSettings tried = font;
        tried.fontSize = (font.fontSize + above) / 2;
        if (text.measure(tried, "Ag", 0).height <= height)
            font = tried;
        else
            above = tried.fontSize;
    }
    return font;
}

void write(TBitmap& line, int32_t left, const TTextSettings& font, const std::string& words, Size area,
           TextPainter& text) {
    const auto mask = text.mask(font, words, area);
    if (!mask) return;
    const int32_t width = std::min(mask->size.width, line.width() - left);
    for (int32_t y = 0; y < std::min(mask->size.height, line.height()); ++y) {
        for (int32_t x = std::max(0, -left); x < width; ++x) {
            const uint8_t covered =
                mask->coverage[static_cast<size_t>(y) * static_cast<size_t>(mask->size.width) + static_cast<size_t>(x)];
            const uint32_t grey = 255U - covered;
            if (covered > 0) line.setPixel(left + x, y, rgb(grey, grey, grey));
        }
    }
}

/// As much of the words as there is room for.
std::string shortened(const std::string& words, const TTextSettings& font, int32_t room, TextPainter& text) {
    if (text.measure(font, words, 0).width <= room) return words;
    size_t fits = 0;
    size_t beyond = toUtf16(words).size();
    while (beyond - fits > 1) {
        const size_t count = (fits + beyond) / 2;
        (text.measure(font, firstUnits(words, count) + ellipsis, 0).width <= room ? fits : beyond) = count;
    }
    return fits == 0 ? std::string() : firstUnits(words, fits) + ellipsis;
}

}  // namespace

std::string footDate(const LocalTime& time, int32_t sheet, int32_t sheets) {
    char buffer[96];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d   %d / %d", time.year, time.month, time.day,
                  static_cast<int>(sheet), static_cast<int>(sheets));
    return buffer;
}

Result<TBitmap> footLine(const CaptureInfo& info, const std::string& right, Size size, TextPainter& text) {
    Result<TBitmap> line =
        TBitmap::create(std::min(size.width, TextPainter::maxSide), size.height, PixelFormat::Bgra32);
    if (!line) return line;
    line->fill(line->bounds(), rgb(255, 255, 255));
    const TTextSettings font = fontFor(size.height, text);
    const int32_t rightWidth = std::min(text.measure(font, right, 0).width, line->width());
    write(*line, line->width() - rightWidth, font, right, {rightWidth, size.height}, text);
    std::string left = info.title;
    if (!info.url.empty()) left += (left.empty() ? "" : "   ") + info.url;
    const int32_t room = line->width() - rightWidth - size.height * 2;
    if (room > 0 && !left.empty()) write(*line, 0, font, shortened(left, font, room, text), {room, size.height}, text);
    return line;
}

}  // namespace glimmer
