#pragma once

#include <functional>
#include <optional>

#include "capture/overlay/window_tree.h"
#include "common/bitmap.h"
#include "common/geometry.h"

namespace glimmer {

/// What the user has chosen on the overlay.
struct OverlayChoice {
    Rect area;               ///< pixels of the whole screen, inside of it
    void* window = nullptr;  ///< HWND of what was framed; null for an area of the user's own, monitors, the desktop
};

struct OverlayOptions {
    bool adjusts = false;  ///< see AreaSelection
    bool hint = false;     ///< show what can be done
    /// The user has switched the hint on or off.
    std::function<void(bool)> hintSwitched{};
    /// The overlay is on the screen. For tests and measuring.
    std::function<void(void* window)> shown{};
};

/// Shows a picture of the screen, Bgra32, over the screen itself and lets the user choose an area of it. Waits until
/// that is done, or left; the overlay is gone then. A second call while one is open is left at once. Fails, with a
/// sentence, when there is no room for it.
Result<std::optional<OverlayChoice>> chooseArea(const TBitmap& screen, Point origin, WindowTree& windows,
                                                const OverlayOptions& options);

/// Whether an overlay is open.
bool overlayOpen();

}  // namespace glimmer
