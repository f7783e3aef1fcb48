#pragma once

#include "common/bitmap.h"
#include "common/region.h"
#include "editor/document/document.h"
#include "editor/painting/annotation_painter.h"

namespace glimmer {

/// Ink that is being drawn.
struct LiveInk {
    const TBitmap* bitmap = nullptr;  ///< painted above everything, straight alpha; or nothing
    Point at;                         ///< its top-left corner
    AnnotationId id = noAnnotation;   ///< whose shape is not painted meanwhile, or noAnnotation
};

/// The working copy of a capture's picture: the background with the annotations painted on it, transparent places on
/// a chequered ground, opaque throughout. What is out of date is noted, and painted again when it is asked for.
class WorkingPicture {
public:
    /// A chequered square's side in picture pixels.
    static constexpr int32_t chequer = 8;

    WorkingPicture(const CaptureDocument& document, TextPainter& text) : document_(document), text_(text) {}

    /// Something inside `area` must be painted again.
    void invalidate(const Rect& area);
    /// The picture's size changed, or everything else.
    void invalidateAll();
    /// Display options, and the annotation whose label is not painted; the caller invalidates.
    PaintOptions options;
    /// Paints what is out of date inside `area` into the copy; its pixels inside `area` are good. Fails for want of
    /// memory. The caller invalidates what the ink changes, but for the annotation it belongs to.
    Status refresh(const Rect& area, const LiveInk& ink = {});
    [[nodiscard]] const TBitmap& bitmap() const { return bitmap_; }

private:
    void paint(const Rect& area, const LiveInk& ink);

    const CaptureDocument& document_;
    TextPainter& text_;
    TBitmap bitmap_;
    Region dirty_;
    AnnotationId inked_ = noAnnotation;
};

}  // namespace glimmer
