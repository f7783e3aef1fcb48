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

/// What the screen shows in that area; black where there is no monitor. `layered`: windows with transparency and video
/// overlays as well, which takes longer on old systems. Fails, with a sentence, also where a black picture is only
/// what the system gives instead of the screen.
Result<TBitmap> grabScreen(const Rect& area, bool layered = true);

/// Whether every pixel of a Bgra32 picture is black.
bool allBlack(const TBitmap& picture);

}  // namespace glimmer
