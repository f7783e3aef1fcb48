#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "common/bitmap.h"
#include "editor/painting/annotation_painter.h"

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
    [[nodiscard]] Size frame() const { return frame_; }
    [[nodiscard]] Colour background() const { return background_; }

private:
    Size frame_;
    Colour background_;
};

/// One thumbnail in the making, in pieces that are short enough for idle time: a hundred labels take a tenth of a
/// second to lay out. `document` and `text` outlive it. When the capture changes meanwhile, start another one.
class ThumbInWork {
public:
    ThumbInWork(const TThumbCreator& creator, const CaptureDocument& document, TextPainter& text,
                const PaintOptions& options, bool unsaved);

    [[nodiscard]] const CaptureDocument& document() const { return document_; }
    /// Does the next piece: a strip of the capture, or one annotation. Fails when memory is short.
    Status advance();
    [[nodiscard]] bool done() const { return !result_.empty(); }
    TBitmap take() { return std::move(result_); }  ///< only when done()

private:
    Status advanceOrThrow();
    [[nodiscard]] bool annotated(const Rect& area) const;
    Status startStrip();
    bool paintNextAnnotation();
    Status endStrip();
    Status finish(const TBitmap& source, const Rect& part);

    TThumbCreator creator_;
    const CaptureDocument& document_;
    TextPainter& text_;
    PaintOptions options_;
    bool unsaved_;
    Rect part_;
    Size inner_;          ///< the reduced capture in its frame
    int32_t factor_ = 1;  ///< the intermediate picture is this many times smaller than the part
    int32_t stripRows_ = 0;
    TBitmap middle_;   ///< the intermediate picture; none for a small capture without annotations
    int32_t row_ = 0;  ///< of the intermediate picture, where the next strip begins
    TBitmap strip_;    ///< being annotated, in full size
    Rect stripArea_;
    size_t nextAnnotation_ = 0;
    TBitmap result_;
};

}  // namespace glimmer
