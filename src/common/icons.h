#pragma once

#include <wx/bmpbndl.h>
#include <wx/iconbndl.h>

namespace glimmer {

/// The program's icon of that name (a file name in src/resources/icons, without ".svg"), drawn sharp at every screen
/// scale. `dip` is its side in pixels at 96 dots per inch. The dark outlines take the system's text colour where the
/// system is dark. An unknown name is a programming error.
wxBitmapBundle icon(const char* name, int dip);

/// The program's own icon in all its sizes, for the captions of windows and the task bar. Empty where there is no
/// library (tests).
wxIconBundle applicationIcons();

}  // namespace glimmer
