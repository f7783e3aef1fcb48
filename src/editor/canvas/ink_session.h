#pragma once

#include <memory>
#include <optional>

#include "editor/canvas/canvas_context.h"
#include "editor/canvas/canvas_drag.h"
#include "editor/canvas/ink_layer.h"
#include "editor/canvas/label_session.h"
#include "editor/canvas/tool_settings.h"

namespace glimmer {

/// What strokes are drawn with.
struct InkPen {
    bool eraser = false;
    Colour colour = rgb(255, 255, 0);
    int32_t width = initialPenWidth;
    bool operator==(const InkPen&) const = default;
};

/// Free drawing, from its beginning to "Apply": strokes on a layer of ink, which the capture's annotation follows after
/// each stroke, so that no long drawing is lost with the program. All of it is one step of the history.
class InkSession {
public:
    InkSession(const CanvasContext& context, const ToolSettings& settings, LabelSession& label)
        : context_(context), settings_(settings), label_(label) {}

    InkPen pen;

    /// Draws in an annotation, whose shape becomes a drawing with the first stroke, or in a new one (noAnnotation).
    /// False, after the user was told, when there is no memory for it.
    bool begin(AnnotationId id);
    /// The drawing is the annotation's now; a new one then asks for its label's text.
    void end();
    [[nodiscard]] bool underWay() const { return layer_ != nullptr; }
    [[nodiscard]] const InkLayer* layer() const { return layer_.get(); }
    /// The annotation that is drawn in and whose shape is therefore not painted, or noAnnotation.
    [[nodiscard]] AnnotationId id() const { return id_; }

    void strokeFrom(Point at);
    void strokeTo(Point at);
    void endStroke();
    void undoStroke();
    void clear();

private:
    void store();
    void storePicture(InkLayer::Finished drawn);
    void takeBack();
    void settleErased();
    void complete();

    const CanvasContext& context_;
    const ToolSettings& settings_;
    LabelSession& label_;
    std::unique_ptr<InkLayer> layer_;
    AnnotationId id_ = noAnnotation;
    Gesture gesture_;
    bool stored_ = false;             ///< the capture has ink of this drawing
    std::optional<TBBShape> before_;  ///< the annotation that is drawn in, as it was
};

/// One stroke of it.
class StrokeDrag final : public CanvasDrag {
public:
    StrokeDrag(InkSession& ink, Point at) : ink_(ink) { ink.strokeFrom(at); }
    void moveTo(Point at, Modifiers /*held*/) override { ink_.strokeTo(at); }
    void finish() override { ink_.endStroke(); }
    void cancel() override { ink_.undoStroke(); }

private:
    InkSession& ink_;
};

}  // namespace glimmer
