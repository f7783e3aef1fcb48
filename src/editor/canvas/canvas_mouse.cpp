// The mouse on the canvas: whose a press is.

#include <cstdlib>
#include <utility>

#include "editor/canvas/annotation_drags.h"
#include "editor/canvas/canvas_controller.h"
#include "imaging/block_at.h"

namespace glimmer {

void CanvasController::press(Point at, Modifiers held) {
    telling([&] { pressed(at, held); });
}

void CanvasController::doubleClick(Point at, Modifiers held) {
    telling([&] { doublePressed(at, held); });
}

void CanvasController::move(Point at, Modifiers held) {
    telling([&] { moved(at, held); });
}

bool CanvasController::rightPress(Point at) {
    return telling([&] { return rightPressed(at); });
}

void CanvasController::release(Point at, Modifiers held) {
    if (drag_ == nullptr) return;
    telling([&] {
        moved(at, held);
        endDrag();
    });
}

void CanvasController::captureLost() {
    telling([&] { endDrag(); });
}

/// Whether a press on the empty canvas selects an area.
bool CanvasController::startsArea() const {
    return mode_ == CanvasMode::Capture || tool_ == EditTool::Pointer || tool_ == EditTool::TextShapeEllipse;
}

void CanvasController::pressed(Point at, Modifiers held) {
    endDrag();
    context_.host.finishTextEdit();
    keyMoves_.end();
    ++dragSteps_;
    if (mode_ == CanvasMode::FreeDrawing) {
        drag_ = std::make_shared<StrokeDrag>(ink_, at);
        return;
    }
    if (mode_ == CanvasMode::Capture) {
        if (!pressArea(at, held)) drag_ = AreaDrag::drawing(context_, at, AreaDrag::Outline::Rectangle, held.ctrl);
        return;
    }
    if (polygon_.underWay()) {
        polygonPress(at);
        return;
    }
    // Ctrl means the selected area, whatever lies there.
    const bool addsArea = held.ctrl && startsArea();
    if (!addsArea && (pressLineEnd(at) || pressHandle(at) || pressArea(at, held) || pressBody(at))) return;
    context_.document.selectAnnotation(noAnnotation);
    pressEmpty(at, held);
}

void CanvasController::pressEmpty(Point at, Modifiers held) {
    switch (tool_) {
        case EditTool::Pointer:
            drag_ = AreaDrag::drawing(context_, at, AreaDrag::Outline::Rectangle, held.ctrl);
            break;
        case EditTool::TextShapeEllipse:
            drag_ = AreaDrag::drawing(context_, at, AreaDrag::Outline::Ellipse, held.ctrl);
            break;
        case EditTool::TextShapePolygon:
            polygonPress(at);
            break;
        case EditTool::WindowSelector:
            context_.document.select(
                Selection::rectangle(blockAt(context_.document.background(), context_.inside(at))));
            drag_ = std::make_shared<IdleDrag>();
            break;
        case EditTool::TextPen:
            beginDrawing(noAnnotation);
            if (ink_.underWay()) drag_ = std::make_shared<StrokeDrag>(ink_, at);
            break;
        default:
            drag_ = std::make_shared<NewAnnotationDrag>(context_, settings_, label_, tool_, at);
    }
}

bool CanvasController::pressLineEnd(Point at) {
    const TBBShape* selected = context_.document.selectedAnnotation();
    if (selected == nullptr) return false;
    for (const TBBShape::FreeEnd& end : selected->freeLineEnds()) {
        if (!context_.touches(end.at, at)) continue;
        drag_ = std::make_shared<LineEndDrag>(context_, *selected, end.front, at);
        context_.document.select({});
        return true;
    }
    return false;
}

/// The selected annotation, with the part as the active one that was pressed last.
std::optional<TBBShape> CanvasController::selectedShape() const {
    const TBBShape* selected = context_.document.selectedAnnotation();
    if (selected == nullptr) return std::nullopt;
    TBBShape shape = *selected;
    if (shape.id() == activeId_) shape.setActivePart(activePart_);
    return shape;
}

/// The handles of the selected annotation.
bool CanvasController::pressHandle(Point at) {
    std::optional<TBBShape> target = selectedShape();
    if (!target || !target->grabHandleAt(at, context_.hitSize()) || !target->mouseDown(at, context_.reach()))
        return false;
    dragAnnotation(std::move(*target), at);
    return true;
}

/// The body of the topmost annotation at the point.
bool CanvasController::pressBody(Point at) {
    const TBBShape* top = context_.document.annotations().topAt(at, context_.reach());
    if (top == nullptr) return false;
    TBBShape target = *top;
    // A press anywhere on the annotation asks all parts, so the active one must be a visible one.
    if (const std::optional<Part> part = target.partAt(at, context_.reach())) target.setActivePart(*part);
    if (!target.mouseDown(at, context_.reach())) return false;
    dragAnnotation(std::move(target), at);
    return true;
}

void CanvasController::dragAnnotation(TBBShape pressed, Point at) {
    activePart_ = pressed.activePart();
    activeId_ = pressed.id();
    drag_ = std::make_shared<AnnotationDrag>(context_, std::move(pressed), at);
    context_.document.select({});
    context_.document.selectAnnotation(activeId_);
}

/// The handles of a selected area, and its inside. An annotation that lies there is nearer than the area under it.
bool CanvasController::pressArea(Point at, Modifiers held) {
    if (held.ctrl) return false;
    const bool covered = mode_ == CanvasMode::Annotation && annotationAt(at) != noAnnotation;
    if (std::shared_ptr<AreaDrag> drag = AreaDrag::grabbed(context_, at, startsArea() && !covered)) {
        drag_ = std::move(drag);
        return true;
    }
    return false;
}

void CanvasController::polygonPress(Point at) {
    const Point corner = context_.inside(at);
    drag_ = std::make_shared<IdleDrag>();
    constexpr size_t least = 3;
    if (polygon_.corners().size() >= least && context_.touches(polygon_.corners().front(), corner)) {
        finishPolygon();
        return;
    }
    if (!polygon_.underWay()) context_.document.select({});
    polygon_.add(corner);
}

void CanvasController::finishPolygon() { context_.document.select(Selection::polygon(polygon_.take())); }

void CanvasController::moved(Point at, Modifiers held) {
    if (const std::shared_ptr<CanvasDrag> drag = drag_) {
        ++dragSteps_;
        drag->moveTo(at, held);
    } else if (polygon_.underWay()) {
        polygon_.pointTo(context_.inside(at));
    }
}

void CanvasController::endDrag() {
    const std::shared_ptr<CanvasDrag> ended = std::exchange(drag_, nullptr);
    if (ended == nullptr) return;
    ++dragSteps_;
    ended->finish();
}

void CanvasController::doublePressed(Point at, Modifiers held) {
    if (mode_ == CanvasMode::Annotation && polygon_.underWay()) {
        finishPolygon();
        return;
    }
    const TBBShape* target =
        mode_ == CanvasMode::Annotation ? context_.document.annotations().topAt(at, context_.reach()) : nullptr;
    const std::optional<Part> part = target == nullptr ? std::nullopt : target->partAt(at, context_.reach());
    if (!part) {
        pressed(at, held);
        return;
    }
    const AnnotationId id = target->id();
    const bool ink =
        *part == Part::Shape && target->shape.settings.kind == ShapeKind::Drawing && !target->text.isVisible();
    endDrag();  // may add an annotation, so that `target` is no longer there
    context_.document.selectAnnotation(id);
    if (ink)
        beginDrawing(id);
    else
        execute(EditCommand::EditText);
}

AnnotationId CanvasController::annotationAt(Point at) const {
    const TBBShape* shape = context_.document.annotations().topAt(at, context_.reach());
    return shape == nullptr ? noAnnotation : shape->id();
}

bool CanvasController::rightPressed(Point at) {
    if (mode_ == CanvasMode::FreeDrawing) {
        endDrawing();
        return false;
    }
    if (mode_ == CanvasMode::Capture) return false;
    endDrag();
    context_.host.finishTextEdit();
    if (polygon_.underWay()) {
        finishPolygon();
        return false;
    }
    // The menu's commands act on what is under the pointer; elsewhere what is selected stays.
    if (const AnnotationId target = annotationAt(at); target != noAnnotation) {
        context_.document.select({});
        context_.document.selectAnnotation(target);
    }
    return true;
}

// --- the cursor

CanvasCursor CanvasController::cursorAt(Point at) const {
    if (mode_ == CanvasMode::FreeDrawing) return ink_.pen.eraser ? CanvasCursor::Eraser : CanvasCursor::Pen;
    if (drag_ != nullptr)
        if (const std::optional<CanvasCursor> own = drag_->cursor()) return *own;
    if (mode_ == CanvasMode::Annotation)
        if (const std::optional<CanvasCursor> cursor = cursorOverSelectedAnnotation(at)) return *cursor;
    if (drag_ == nullptr)
        if (const std::optional<CanvasCursor> cursor = cursorAtRest(at)) return *cursor;
    return context_.picture().contains(at) ? CanvasCursor::Cross : CanvasCursor::Arrow;
}

/// Over its handles.
std::optional<CanvasCursor> CanvasController::cursorOverSelectedAnnotation(Point at) const {
    const std::optional<TBBShape> shape = selectedShape();
    if (!shape || !shape->anyVisible()) return std::nullopt;
    for (const TBBShape::FreeEnd& end : shape->freeLineEnds())
        if (context_.touches(end.at, at)) return CanvasCursor::Move;
    const int32_t handle = shape->hasHandles() ? handleAt(shape->handleRect(), at, context_.hitSize()) : noHandle;
    if (handle == noHandle) return std::nullopt;
    return cursorOverHandle(shape->handleRect(), handle);
}

/// Over the selected area and over annotations, while nothing is dragged.
std::optional<CanvasCursor> CanvasController::cursorAtRest(Point at) const {
    const Selection& selection = context_.document.selection();
    if (hasHandles(selection)) {
        const int32_t handle = handleAt(selection.rect, at, context_.hitSize());
        if (handle != noHandle) return cursorOverHandle(selection.rect, handle);
    }
    const bool onAnnotation =
        mode_ == CanvasMode::Annotation && !polygon_.underWay() && annotationAt(at) != noAnnotation;
    const bool onArea = startsArea() && selection.pixels(context_.document.size()).contains(at);
    if (onAnnotation || onArea) return CanvasCursor::Move;
    return std::nullopt;
}

}  // namespace glimmer
