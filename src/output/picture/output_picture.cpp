#include "output/picture/output_picture.h"

#include <new>

#include "common/assertion.h"
#include "common/clock.h"
#include "editor/painting/display_options.h"
#include "output/picture/watermark.h"
#include "settings/options.h"

namespace glimmer {

namespace {

Result<TBitmap> painted(const CaptureDocument& document, int32_t from, int32_t to, Clock& clock, TextPainter& text) {
    const Size whole = document.size();
    Result<TBitmap> picture = document.background().cropped({0, from, whole.width, to});
    if (!picture) return picture;
    const Options& options = OptionsHolder();
    PaintOptions painting = paintOptions(options);
    painting.origin = {0, from};
    paintAnnotations(*picture, picture->bounds(), document.annotations(), text, painting);
    const Status marked =
        applyWatermark(*picture, options, document.info().url, document.info().title, clock, text, {whole, from});
    if (!marked) return marked.failure();
    GLIMMER_ASSERT(!picture->empty(), "pResultBmp != NULL", "uSaver");
    return picture;
}

}  // namespace

Result<TBitmap> outputPicture(const CaptureDocument& document, TextPainter& text) {
    return outputRows(document, 0, document.size().height, systemClock(), text);
}

Result<TBitmap> outputRows(const CaptureDocument& document, int32_t from, int32_t to, Clock& clock, TextPainter& text) {
    try {
        return painted(document, from, to, clock, text);
    } catch (const std::bad_alloc&) {  // a resting capture that finds no room to wake, among others
        return Failure{"There is not enough memory for this picture."};
    }
}

}  // namespace glimmer
