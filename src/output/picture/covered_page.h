#pragma once

#include "editor/annotations/shapes_list.h"

namespace glimmer {

/// Whether annotations cover something of the page that whoever has the editable picture could uncover: a filled shape
/// that lets at most a fifth through, a highlight (a filled shape alone, whatever shines through it), or a picture or
/// drawing of which at least half is opaque. Hidden shapes cover nothing.
bool coversPage(const TShapesList& annotations);

}  // namespace glimmer
