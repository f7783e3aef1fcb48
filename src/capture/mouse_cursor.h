#pragma once

#include <optional>

#include "common/bitmap.h"
#include "common/geometry.h"

namespace glimmer {

/// A picture of the mouse pointer: Bgra32 with straight alpha, and where its top left corner is on the screen. Pixels
/// that turn the screen's colours round (of a text pointer, say) are black.
struct MouseCursor {
    TBitmap picture;
    Point at;
};

/// The mouse pointer as the screen shows it now; nothing when it is hidden or the system does not tell.
std::optional<MouseCursor> visibleMouseCursor();

}  // namespace glimmer
