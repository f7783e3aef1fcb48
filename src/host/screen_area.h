#pragma once

#include <cstdint>

#include "common/bitmap.h"
#include "common/geometry.h"

namespace glimmer {

/// The part of the desktop that a capture without a picture shows: the monitor with that index (from 0), or the
/// whole screen when there is no such monitor. Screen coordinates; they may be negative.
Rect captureArea(int32_t monitor);

/// The whole screen, all monitors together.
Rect wholeScreen();

/// What the screen shows in that area. `layered`: windows with transparency and video overlays as well, which takes
/// longer on old systems.
Result<TBitmap> grabScreen(const Rect& area, bool layered = true);

}  // namespace glimmer
