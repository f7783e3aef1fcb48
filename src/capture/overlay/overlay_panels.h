#pragma once

#include <optional>
#include <string>

#include "capture/drawing_surface.h"
#include "capture/overlay/area_selection.h"
#include "capture/overlay/frozen_screen.h"

// What stands on the frozen screen beside the area: the magnifier with its figures, and the hint.

namespace glimmer {

/// A small picture and where it stands on the screen.
class OverlayPanel {
public:
    [[nodiscard]] const Rect& place() const { return place_; }
    /// Its device context (HDC), from the corner; null while there is nothing to be seen.
    [[nodiscard]] void* deviceContext() const { return surface_ ? surface_->deviceContext() : nullptr; }
    [[nodiscard]] bool shown() const { return surface_.has_value() && !place_.empty(); }
    void hide() { place_ = {}; }

protected:
    /// A surface of that size, the one before if it has it; false when there is none to be had.
    bool prepare(Size size);
    void putAt(Point corner) {
        const Size size = surface_->size();
        place_ = {corner.x, corner.y, corner.x + size.width, corner.y + size.height};
    }
    std::optional<DrawingSurface> surface_;

private:
    Rect place_;
};

/// The pixels around the pointer, its place, the size of the area and the colour, beside the pointer on its monitor.
class MagnifierPanel : public OverlayPanel {
public:
    void show(const FrozenScreen& screen, const AreaSelection& selection, const Rect& monitor, int dotsPerInch);
};

/// What can be done, at the upper edge of a monitor, and away from the pointer.
class HintPanel : public OverlayPanel {
public:
    void show(const Rect& monitor, Point pointer, int dotsPerInch);
};

}  // namespace glimmer
