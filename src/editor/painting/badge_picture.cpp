#include "editor/painting/badge_picture.h"

#include <cmath>
#include <stdexcept>

#include "editor/annotations/shape_geometry.h"

namespace glimmer {

namespace {

constexpr int32_t badgeSide = 2 * badgeRadius;

uint8_t mix(uint8_t a, uint8_t b, double part) { return static_cast<uint8_t>(std::lround(a + (b - a) * part)); }

/// A gold disc, lighter at the top, with a white ring and a dark rim: it stands out on white and on dark pages.
/// One colour alone is transparent, so the rim has no soft pixels; inside, the rings are blended.
TBitmap draw() {
    Result<TBitmap> made = TBitmap::create(badgeSide, badgeSide, PixelFormat::Bgr24);
    if (!made) throw std::bad_alloc();
    TBitmap picture = made.take();
    picture.fill(picture.bounds(), badgeTransparentColour);
    constexpr double radius = badgeSide / 2.0;
    const auto blend = [](Colour a, Colour b, double part) {
        return rgb(mix(redOf(a), redOf(b), part), mix(greenOf(a), greenOf(b), part), mix(blueOf(a), blueOf(b), part));
    };
    for (int32_t y = 0; y < badgeSide; ++y) {
        for (int32_t x = 0; x < badgeSide; ++x) {
            const double distance = std::hypot(x + 0.5 - radius, y + 0.5 - radius);
            if (distance > radius) continue;
            const double height = y / static_cast<double>(badgeSide - 1);
            const Colour disc = blend(rgb(255, 236, 160), rgb(250, 190, 60), height);
            const Colour rim = rgb(112, 72, 0);
            const Colour ring = rgb(255, 255, 255);
            // From the middle outwards: disc to 12.5, ring to 14.5, rim to 16, each border one pixel soft.
            Colour colour = blend(disc, ring, std::clamp(distance - 12.0, 0.0, 1.0));
            colour = blend(colour, rim, std::clamp(distance - 14.0, 0.0, 1.0));
            picture.setPixel(x, y, colour);
        }
    }
    return picture;
}

}  // namespace

const TBitmap& badgePicture() {
    static const TBitmap picture = draw();
    return picture;
}

}  // namespace glimmer
