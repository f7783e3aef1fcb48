#pragma once

#include <wx/colour.h>

namespace glimmer {

/// The least contrast that text wants.
constexpr double readable = 4.5;

/// Contrast ratio by WCAG 2.1, 1 to 21.
double contrast(const wxColour& a, const wxColour& b);

/// Of the system's colours of text, the first that can be read on that background; else the one that comes nearest.
wxColour readableOn(const wxColour& background);

/// Whether the user has chosen a contrast theme, or dark colours of his own: then there are no colours but the
/// system's.
bool usesContrastTheme();

}  // namespace glimmer
