#pragma once

#include "common/bitmap.h"

namespace glimmer {

/// The colour of the badge's picture that is not painted.
constexpr Colour badgeTransparentColour = rgb(255, 0, 0);

/// The round picture under a step number: 32 x 32 pixels, 24 bits, on a ground of badgeTransparentColour. Drawn on
/// first use; also the picture of the editor's hidden image `imgCircle`.
const TBitmap& badgePicture();

}  // namespace glimmer
