#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "common/bitmap.h"
#include "common/geometry.h"
#include "editor/annotations/shapes_list.h"
#include "editor/annotations/uShapes.h"
#include "imaging/pixel_operation.h"

namespace glimmer {

/// What is known of a capture beside its pixels. All text is UTF-8.
struct CaptureInfo {
    std::string url;       ///< address of the page; empty when it is none
    std::string title;     ///< title of the page
    std::string name;      ///< as the list of captures shows it
    std::string notes;     ///< general notes on the capture
    int64_t captured = 0;  ///< time of the capture, seconds since 1970-01-01 UTC; 0 when unknown
    bool operator==(const CaptureInfo&) const = default;
};

/// What has changed in a document. Several may be set at once.
struct DocumentChange {
    bool pixels = false;       ///< the background inside `area`
    bool size = false;         ///< the picture's size; everything must be painted again
    bool annotations = false;  ///< annotations that were or are inside `area`
    bool selection = false;    ///< the selected area or annotation; nothing of what is saved
    bool info = false;         ///< name or notes
    bool state = false;        ///< modified(), or what can be undone
    Rect area;                 ///< picture pixels to paint again, annotations' shadows included
};

/// Identity of an annotation in its list.
using AnnotationId = uint32_t;
constexpr AnnotationId noAnnotation = 0;

/// The content of a capture as commands change it: each primitive does one change and announces it. Only commands
/// (through the history) call those.
class CaptureContent {
public:
    using Listener = std::function<void(const DocumentChange&)>;

    CaptureContent(TBitmap picture, CaptureInfo info, TShapesList annotations, Listener listener);

    /// Wakes a parked picture first; throws std::bad_alloc when there is no room for it.
    [[nodiscard]] const TBitmap& picture() const;
    [[nodiscard]] Size pictureSize() const { return picture_.size(); }
    /// Gives up the address space of the picture until it is asked for again; whether it did.
    bool parkPicture() { return picture_.park(); }
    [[nodiscard]] bool pictureParked() const { return picture_.parked(); }
    [[nodiscard]] const TShapesList& annotations() const { return annotations_; }
    [[nodiscard]] const CaptureInfo& info() const { return info_; }
    [[nodiscard]] const TBBShape* find(AnnotationId id) const { return annotations_.find(id); }

    /// Draws an operation on selected pixels.
    void drawOperation(const TPixelOperation& operation);
    /// Pixels of the picture become others; they lie inside it.
    void putPixels(Point at, const TBitmap& pixels);
    /// The picture becomes another; annotations move by `shift` so as to keep their place over the pixels.
    void setPicture(TBitmap picture, Point shift);
    /// The whole list at once; the picture stays.
    void setAnnotations(TShapesList annotations);
    // What comes into the list is settled (see TBBShape::settle): a drag lives in the canvas, not in the capture.
    /// A new annotation at that place in the painting order; answers its id (kept when it has a free one).
    AnnotationId insertAnnotation(size_t index, TBBShape shape);
    void removeAnnotation(AnnotationId id);
    /// The annotation with the same id becomes this.
    void replaceAnnotation(TBBShape shape);
    void moveInOrder(AnnotationId id, size_t index);
    void setInfo(CaptureInfo info);

private:
    void announceAnnotations(const Rect& area);

    mutable TBitmap picture_;  ///< mutable for waking only; the pixels stay
    CaptureInfo info_;
    TShapesList annotations_;
    Listener listener_;
};

}  // namespace glimmer
