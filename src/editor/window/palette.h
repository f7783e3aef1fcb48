#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "common/colour.h"

namespace glimmer {

constexpr int paletteColumns = 8;
/// The colours offered, row by row: greys; eight that people who see red and green alike can tell apart; strong,
/// light and dark ones of eight hues.
constexpr std::array<Colour, 40> palette = {
    rgb(0, 0, 0),       rgb(64, 64, 64),    rgb(96, 96, 96),    rgb(128, 128, 128),
    rgb(160, 160, 160), rgb(192, 192, 192), rgb(224, 224, 224), rgb(255, 255, 255),

    rgb(0, 0, 0),       rgb(230, 159, 0),   rgb(86, 180, 233),  rgb(0, 158, 115),
    rgb(240, 228, 66),  rgb(0, 114, 178),   rgb(213, 94, 0),    rgb(204, 121, 167),

    rgb(229, 20, 0),    rgb(250, 104, 0),   rgb(255, 215, 0),   rgb(96, 169, 23),
    rgb(0, 171, 169),   rgb(27, 120, 226),  rgb(106, 0, 255),   rgb(216, 0, 115),

    rgb(255, 205, 200), rgb(255, 224, 190), rgb(255, 246, 190), rgb(216, 240, 190),
    rgb(190, 240, 238), rgb(204, 236, 255), rgb(224, 208, 255), rgb(255, 208, 232),

    rgb(139, 0, 0),     rgb(150, 70, 0),    rgb(135, 115, 0),   rgb(0, 100, 0),
    rgb(0, 92, 92),     rgb(16, 50, 130),   rgb(60, 16, 120),   rgb(120, 0, 64),
};

constexpr size_t lastColoursKept = 10;
/// `used` comes first; each colour once, at most lastColoursKept.
void rememberColour(std::vector<Colour>& last, Colour used);

}  // namespace glimmer
