#pragma once

#include "editor/canvas/canvas_context.h"
#include "editor/canvas/canvas_drag.h"
#include "editor/canvas/label_session.h"
#include "editor/canvas/tool_settings.h"

namespace glimmer {

/// An annotation on its way: all of it, its label, or the handle that the press has grabbed.
class AnnotationDrag final : public CanvasDrag {
public:
    /// `pressed` has taken the press at that point.
    AnnotationDrag(const CanvasContext& context, TBBShape pressed, Point at);

    void moveTo(Point at, Modifiers held) override;
    void finish() override;
    void cancel() override;
    [[nodiscard]] std::optional<CanvasCursor> cursor() const override;
    [[nodiscard]] const TBBShape* annotation() const override { return &shape_; }
    [[nodiscard]] bool guided() const override { return labelAlone_ && gesture_.used(); }

private:
    const CanvasContext& context_;
    TBBShape shape_;
    Point pressedAt_;
    Gesture gesture_;
    bool labelAlone_;
};

/// An end of a line that stands on nothing that is shown.
class LineEndDrag final : public CanvasDrag {
public:
    LineEndDrag(const CanvasContext& context, TBBShape shape, bool front, Point at);

    void moveTo(Point at, Modifiers held) override;
    void finish() override {}
    void cancel() override;
    [[nodiscard]] std::optional<CanvasCursor> cursor() const override { return CanvasCursor::Move; }
    [[nodiscard]] const TBBShape* annotation() const override { return &shape_; }

private:
    const CanvasContext& context_;
    TBBShape shape_;
    bool front_;
    Point lastAt_;
    Gesture gesture_;
};

/// A new annotation, which is there from the first move on; its label's text is asked for at the end. A click makes
/// none, but for the tool that makes labels.
class NewAnnotationDrag final : public CanvasDrag {
public:
    NewAnnotationDrag(const CanvasContext& context, const ToolSettings& settings, LabelSession& label, EditTool tool,
                      Point at);

    void moveTo(Point at, Modifiers held) override;
    void finish() override;
    void cancel() override;
    [[nodiscard]] const TBBShape* annotation() const override { return shape_ ? &*shape_ : nullptr; }

private:
    void span(TBBShape& shape, Point to) const;
    void pointFrom(TBBShape& shape, Point end) const;
    [[nodiscard]] bool makesLine() const { return tool_ == EditTool::TextLine || tool_ == EditTool::Line; }

    const CanvasContext& context_;
    const ToolSettings& settings_;
    LabelSession& label_;
    EditTool tool_;
    Point pressedAt_;
    Gesture gesture_;
    std::optional<TBBShape> shape_;
    bool failed_ = false;  ///< it could not be made
};

}  // namespace glimmer
