#include "editor/painting/display_options.h"

#include "settings/options.h"

namespace glimmer {

PaintOptions paintOptions(const Options& options) {
    PaintOptions paint;
    paint.shadows = options.on("chkDisplayShadows");
    return paint;
}

}  // namespace glimmer
