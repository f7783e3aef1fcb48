#pragma once

#include "common/bitmap.h"
#include "editor/document.h"
#include "editor/text_painter.h"

namespace glimmer {

/// The picture that every output of a capture shows: its background with the annotations on it, as far as the
/// display options show them. The one place through which all output passes, so what belongs on every output picture
/// is drawn here: the watermark, if the options want one. Fails also when the watermark's file cannot be read, so that
/// no picture leaves the program without it. 32 bits.
Result<TBitmap> outputPicture(const CaptureDocument& document, TextPainter& text);

}  // namespace glimmer
