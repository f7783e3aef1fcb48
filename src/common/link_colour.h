#pragma once

#include <wx/colour.h>

namespace glimmer {

/// The colour of text that can be clicked: the system's, or a blue of our own where the system's cannot be read on the
/// colour of dialogs.
wxColour linkColour();

/// The colour of text that explains: quieter than other text, but readable on the colour of dialogs, unlike that of
/// disabled text.
wxColour quietTextColour();

}  // namespace glimmer
