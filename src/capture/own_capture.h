#pragma once

#include <functional>

#include "common/bitmap.h"
#include "common/geometry.h"

// Pictures that the program takes of the screen itself.

namespace glimmer {

/// Calls `take` while nothing of the program is in pictures of the screen: no window, no dialog, and no menu that is
/// still fading (see expectFading). Everything is back when this returns or throws.
Result<TBitmap> takeWithoutOwnWindows(const std::function<Result<TBitmap>()>& take);

/// Hides a window (HWND) of this thread and returns when pictures of the screen are without it.
void awaitGone(void* window);

/// Something of the program leaves the screen now, and the system may fade it out: a menu whose command is being
/// carried out, a window that was hidden or minimized. The next picture waits until it is gone.
void expectFading();

/// The window (HWND) that the user has in front, the program's own left out; null when there is none. For use inside
/// takeWithoutOwnWindows().
void* windowInFront();

/// Lets the user notice that the screen was captured: a sound, a flash of light over `area`, each if the options want
/// it. For after the picture was taken.
void announceCapture(const Rect& area);

}  // namespace glimmer
