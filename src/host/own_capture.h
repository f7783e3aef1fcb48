#pragma once

#include <functional>

#include "common/bitmap.h"

// Pictures that the program takes of the screen itself.

namespace glimmer {

/// Calls `take` while the main window is off the screen and what it covered has been painted again. The window is
/// back when this returns.
Result<TBitmap> takeWithMainWindowAside(const std::function<Result<TBitmap>()>& take);

/// The capture sound, if the capture options want it. For after the picture was taken.
void playCaptureSound();

}  // namespace glimmer
