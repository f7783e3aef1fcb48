#pragma once

#include <functional>

#include "common/colour.h"
#include "editor/window/picker_window.h"

namespace glimmer {

/// The colour picker: the palette, the colours used last, and the system's dialog. Arrow keys walk over the fields,
/// Enter takes one. `picked` is called once, or never.
void openColourPicker(wxWindow* parent, const wxRect& owner, Colour initial, std::function<void(Colour)> picked);

}  // namespace glimmer
