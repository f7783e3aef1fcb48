#pragma once

#include <string>

#include "editor/annotations/shapes_list.h"
#include "editor/painting/text_painter.h"

namespace glimmer {

/// Which of a page's data a capture of it gets as text objects.
struct StampOptions {
    bool url = false;
    bool title = false;
    std::string fontName = "Arial";
};

/// The text objects, one below the other from the top left. A capture without an address gets none at all.
TShapesList captureStamps(const std::string& url, const std::string& title, const StampOptions& options,
                          TextPainter& painter);

}  // namespace glimmer
