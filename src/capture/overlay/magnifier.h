#pragma once

#include <string>

#include "common/bitmap.h"
#include "common/colour.h"
#include "common/geometry.h"

namespace glimmer {

/// The pixels around a place, enlarged: each a square with a line of the grid at its right and lower side, the one in
/// the middle framed.
struct Magnifier {
    int32_t cells = 17;  ///< pixels across, odd
    int32_t cell = 8;    ///< side of each, its line included; above 2

    [[nodiscard]] int32_t side() const { return cells * cell; }
    /// Paints into the square at `corner` of a Bgra32 picture, side() wide, which lies inside. `screen` is the whole
    /// screen, Bgra32, whose top left pixel is at `origin`; what lies beyond it is dark grey.
    void paint(TBitmap& target, Point corner, const TBitmap& screen, Point origin, Point at) const;
};

/// "#RRGGBB".
std::string colourText(Colour colour);
/// "800 x 600" and "-12, 40", with the signs that people use.
std::string sizeText(Size size);
std::string placeText(Point at);

}  // namespace glimmer
