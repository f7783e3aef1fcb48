#include "output/picture/output_picture.h"

#include <new>

#include "common/assertion.h"
#include "common/clock.h"
#include "editor/painting/display_options.h"
#include "output/picture/watermark.h"
#include "settings/options.h"

namespace glimmer {

namespace {

Result<TBitmap> painted(const CaptureDocument& document, TextPainter& text) {
    Result<TBitmap> picture = document.background().clone();
    if (!picture) return picture;
    const Options& options = OptionsHolder();
    paintAnnotations(*picture, picture->bounds(), document.annotations(), text, paintOptions(options));
    const Status marked =
        applyWatermark(*picture, options, document.info().url, document.info().title, systemClock(), text);
    if (!marked) return marked.failure();
    GLIMMER_ASSERT(!picture->empty(), "pResultBmp != NULL", "uSaver");
    return picture;
}

}  // namespace

Result<TBitmap> outputPicture(const CaptureDocument& document, TextPainter& text) {
    try {
        return painted(document, text);
    } catch (const std::bad_alloc&) {  // a resting capture that finds no room to wake, among others
        return Failure{"There is not enough memory for this picture."};
    }
}

}  // namespace glimmer
