#pragma once

#include <functional>

#include "common/bitmap.h"
#include "common/geometry.h"

// Pictures that the program takes of the screen itself.

namespace glimmer {

/// Calls `take` while the main window is off the screen and what it covered has been painted again. The window is
/// back when this returns.
Result<TBitmap> takeWithMainWindowAside(const std::function<Result<TBitmap>()>& take);

/// Lets the user notice that the screen was captured: a sound, a flash of light over `area`, each if the options want
/// it. For after the picture was taken.
void announceCapture(const Rect& area);

}  // namespace glimmer
