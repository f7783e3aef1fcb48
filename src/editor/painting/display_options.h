#pragma once

#include "editor/painting/annotation_painter.h"

namespace glimmer {

class Options;

/// How annotations are painted, on the canvas, in thumbnails and in output alike.
PaintOptions paintOptions(const Options& options);

}  // namespace glimmer
