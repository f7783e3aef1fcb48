#include "capture/overlay/magnifier.h"

#include <cstdio>

namespace glimmer {

namespace {

constexpr Colour beyond = rgb(40, 40, 40);
constexpr Colour frameInside = rgb(255, 255, 255);
constexpr Colour frameOutside = rgb(0, 0, 0);

/// Of the grid: visible on every colour, and not loud.
Colour lineBeside(Colour colour) {
    const auto softer = [](uint8_t channel) {
        return static_cast<uint8_t>(channel > 127 ? channel - 40 : channel + 40);
    };
    return rgb(softer(redOf(colour)), softer(greenOf(colour)), softer(blueOf(colour)));
}

void frame(TBitmap& target, const Rect& area, Colour colour) {
    target.fill({area.left, area.top, area.right, area.top + 1}, colour);
    target.fill({area.left, area.bottom - 1, area.right, area.bottom}, colour);
    target.fill({area.left, area.top, area.left + 1, area.bottom}, colour);
    target.fill({area.right - 1, area.top, area.right, area.bottom}, colour);
}

}  // namespace

void Magnifier::paint(TBitmap& target, Point corner, const TBitmap& screen, Point origin, Point at) const {
    const int32_t middle = cells / 2;
    for (int32_t row = 0; row < cells; ++row) {
        for (int32_t column = 0; column < cells; ++column) {
            const Point from{at.x - origin.x + column - middle, at.y - origin.y + row - middle};
            const Colour colour = screen.bounds().contains(from) ? screen.pixel(from.x, from.y) : beyond;
            const Point to{corner.x + column * cell, corner.y + row * cell};
            target.fill({to.x, to.y, to.x + cell, to.y + cell}, lineBeside(colour));
            target.fill({to.x, to.y, to.x + cell - 1, to.y + cell - 1}, colour);
        }
    }
    const Point centre{corner.x + middle * cell, corner.y + middle * cell};
    const Rect inside{centre.x - 1, centre.y - 1, centre.x + cell, centre.y + cell};
    frame(target, inside, frameInside);
    frame(target, inside.inflated(1), frameOutside);
}

std::string colourText(Colour colour) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02X%02X%02X", redOf(colour), greenOf(colour), blueOf(colour));
    return text;
}

std::string sizeText(Size size) { return std::to_string(size.width) + " \xC3\x97 " + std::to_string(size.height); }

std::string placeText(Point at) { return std::to_string(at.x) + ", " + std::to_string(at.y); }

}  // namespace glimmer
