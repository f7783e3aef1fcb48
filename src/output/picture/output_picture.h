#pragma once

#include "common/bitmap.h"
#include "common/clock.h"
#include "editor/document/document.h"
#include "editor/painting/text_painter.h"

namespace glimmer {

/// The picture that every output of a capture shows: its background with the annotations on it. The one place through
/// which all output passes, so what belongs on every output picture is drawn here: the watermark, if the options want
/// one. Fails for want of memory, and when the watermark's file cannot be read, so that no picture leaves the program
/// without it. 32 bits.
Result<TBitmap> outputPicture(const CaptureDocument& document, TextPainter& text);

/// The rows `from` to below `to` of the same picture, for output that never needs the whole of it at once; the same
/// pixels. `clock` tells the time that a watermark may name, the same for all rows of a picture.
Result<TBitmap> outputRows(const CaptureDocument& document, int32_t from, int32_t to, Clock& clock, TextPainter& text);

/// Lets a capture that rests (see CaptureDocument::park) rest again at the end of the scope, so that output of many
/// large captures never has more than one of them awake.
class BackToRest {
public:
    explicit BackToRest(CaptureDocument& document) : document_(document), rested_(document.parked()) {}
    ~BackToRest() {
        if (rested_) document_.park();
    }
    BackToRest(const BackToRest&) = delete;
    BackToRest& operator=(const BackToRest&) = delete;
    BackToRest(BackToRest&&) = delete;
    BackToRest& operator=(BackToRest&&) = delete;

private:
    CaptureDocument& document_;
    bool rested_;
};

}  // namespace glimmer
