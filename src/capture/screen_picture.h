#pragma once

#include <optional>

#include "capture/mouse_cursor.h"
#include "common/bitmap.h"
#include "common/geometry.h"
#include "common/result.h"

namespace glimmer {

/// What a capture begins with that came without a picture.
struct ScreenPicture {
    TBitmap picture;
    std::optional<MouseCursor> pointer;  ///< in the picture's pixels, where the options want it
};

/// The part of the desktop that the options choose for it, in screen coordinates.
Rect chosenScreenArea();

/// What the screen shows there, without the program's windows, and the user notices (announceCapture()); a white page
/// of that size where the options do not start from the screen. Fails with a sentence.
Result<ScreenPicture> takeScreenPicture(const Rect& area);

}  // namespace glimmer
