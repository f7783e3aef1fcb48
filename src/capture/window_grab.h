#pragma once

#include "common/bitmap.h"
#include "common/geometry.h"

// Pictures of windows (HWND). What the screen shows of a window is taken first: much of what today's programs draw is
// in no device context of theirs. Where other windows cover it, or a part lies outside of the monitors, the system is
// asked to draw it; where that gives nothing, the window's own device context serves.

namespace glimmer {

/// Where a window is seen, in pixels of the screen: without the invisible border that the mouse can grip, and a
/// maximized one without what sticks out of its monitor. Empty when the window is gone.
Rect visibleFrame(void* window);

/// Its client area, in pixels of the screen. Empty when the window is gone.
Rect clientFrame(void* window);

/// The visible frame of a window as a picture. What lies outside of the monitors and cannot be had is cut off. Fails,
/// with a sentence, when the window is gone, hidden, minimized or has no area.
Result<TBitmap> grabWindow(void* window);
/// The same for the client area alone.
Result<TBitmap> grabClientArea(void* window);
/// A window's whole rectangle in just its size, black where nothing can be had.
Result<TBitmap> grabWholeWindow(void* window);

}  // namespace glimmer
