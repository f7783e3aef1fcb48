#pragma once

#include "common/bitmap.h"
#include "editor/annotation_painter.h"

namespace glimmer {

class CaptureDocument;

/// Makes the small pictures of the capture list.
class TThumbCreator {
public:
    /// Every thumbnail is `frame` pixels large and lies on `background`.
    TThumbCreator(Size frame, Colour background) : frame_(frame), background_(background) {}

    /// The capture as output shows it, area-averaged, centred in the frame with a thin border. Of a page that is much
    /// taller than the frame the top is shown, since the whole would be an unreadable sliver. `unsaved` adds a dot
    /// in the corner. Fails when memory is short.
    [[nodiscard]] Result<TBitmap> create(const CaptureDocument& document, TextPainter& text,
                                         const PaintOptions& options, bool unsaved) const;

    /// The part of a capture of that size that is shown.
    [[nodiscard]] Rect shownPart(Size capture) const;

private:
    Size frame_;
    Colour background_;
};

}  // namespace glimmer
