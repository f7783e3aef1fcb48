#pragma once

#include "common/geometry.h"
#include "editor/canvas/edit_tool.h"

namespace glimmer {

/// Where the user is on a capture, kept with it while another one is on the canvas. As it is here a capture begins.
struct CanvasPlace {
    int32_t zoom = 100;  ///< per cent
    Point scroll;        ///< device pixels at that zoom
    EditTool tool = EditTool::Pointer;
};

}  // namespace glimmer
