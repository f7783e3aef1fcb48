// The canvas's state, its settings and modes, and what lies over the picture.

#include "editor/canvas/canvas_controller.h"

#include <algorithm>
#include <utility>

#include "editor/canvas/capture_commands.h"

namespace glimmer {

CanvasController::CanvasController(CaptureDocument& document, CanvasView& view, CanvasHost& host)
    : context_{document, view, host},
      settings_(context_),
      label_(context_),
      ink_(context_, settings_, label_),
      keyMoves_(context_) {
    told_.settings = settings_.own();
}

CanvasController::~CanvasController() = default;

/// Compares with what the window knows, so that no change can be forgotten and none is told twice.
void CanvasController::tell() {
    if (inputs_ > 0) return;
    Told now{
        tool_,     mode_,      settings_.own(), ink_.pen, dragSteps_, polygon_.corners().size(), polygon_.pointer(),
        activeId_, activePart_};
    ControllerChange change;
    change.tool = now.tool != told_.tool;
    change.mode = now.mode != told_.mode;
    change.settings = now.settings != told_.settings || now.pen != told_.pen;
    change.hover = now.dragSteps != told_.dragSteps || now.corners != told_.corners || now.pointer != told_.pointer ||
                   now.activeId != told_.activeId || now.activePart != told_.activePart;
    if (!change.any()) return;
    told_ = std::move(now);
    context_.host.controllerChanged(change);
}

void CanvasController::setTool(EditTool tool) {
    telling([&] {
        if (mode_ == CanvasMode::FreeDrawing) endDrawing();
        context_.host.finishTextEdit();
        endDrag();
        polygon_.clear();
        tool_ = tool;
    });
}

// --- settings

void CanvasController::setToolSettings(TShapeStyle settings) {
    telling([&] { settings_.setOwn(std::move(settings)); });
}

void CanvasController::changeSettings(const std::function<void(TShapeStyle&)>& change) {
    Gesture alone;
    changeSettings(change, alone);
}

void CanvasController::changeSettings(const std::function<void(TShapeStyle&)>& change, Gesture& gesture) {
    telling([&] { settings_.change(change, gesture); });
}

void CanvasController::showPart(Part part, bool shown) {
    telling([&] { settings_.showPart(part, shown); });
}

void CanvasController::applyStyle(const TShapeStyle& style, bool withVisibility) {
    telling([&] { settings_.apply(style, withVisibility); });
}

void CanvasController::changeKind(ShapeKind kind) {
    if (kind != ShapeKind::Drawing)
        changeSettings([kind](TShapeStyle& style) { style.shape.kind = kind; });
    else if (mode_ != CanvasMode::FreeDrawing)
        beginDrawing(context_.document.selectedId());
}

// --- text

void CanvasController::textEdited(AnnotationId id, const std::string& text) {
    telling([&] { label_.edited(id, text); });
}

void CanvasController::endTextEdit(AnnotationId id) {
    telling([&] { label_.end(id); });
}

// --- annotations from elsewhere

bool CanvasController::insertAnnotations(std::vector<TBBShape> shapes, Point shift) {
    return telling([&] { return glimmer::insertAnnotations(context_, std::move(shapes), shift); });
}

bool CanvasController::dropAnnotations(std::vector<TBBShape> shapes, Point at) {
    if (mode_ != CanvasMode::Annotation) return false;
    context_.host.finishTextEdit();
    Rect all;
    for (const TBBShape& shape : shapes) all = all.united(shape.bounds());
    return insertAnnotations(std::move(shapes),
                             {at.x - middle(all.left, all.right), at.y - middle(all.top, all.bottom)});
}

bool CanvasController::insertPicture(TBitmap picture) {
    if (picture.empty()) return false;
    if (picture.format() != PixelFormat::Bgra32) {
        Result<TBitmap> converted = picture.converted(PixelFormat::Bgra32);
        if (!converted) {
            context_.host.failed(converted.message());
            return false;
        }
        picture = converted.take();
    }
    return telling([&] {
        if (mode_ == CanvasMode::FreeDrawing) endDrawing();
        context_.host.finishTextEdit();
        const Rect seen = context_.view.visible();
        const Size size = picture.size();
        const Point at{std::max(0, middle(seen.left, seen.right) - size.width / 2),
                       std::max(0, middle(seen.top, seen.bottom) - size.height / 2)};
        TBBShape shape = pictureAnnotation(settings_.own(), std::move(picture), at);
        shape.number.number = context_.document.annotations().nextNumber();
        return insertAnnotations({std::move(shape)}, {});
    });
}

bool CanvasController::setNumbers(const std::vector<std::pair<AnnotationId, int32_t>>& numbers) {
    return glimmer::setNumbers(context_, numbers);
}

// --- free drawing

void CanvasController::beginDrawing(AnnotationId id) {
    telling([&] {
        context_.host.finishTextEdit();
        endDrag();
        if (ink_.begin(id)) mode_ = CanvasMode::FreeDrawing;
    });
}

void CanvasController::endDrawing() {
    telling([&] {
        drag_.reset();
        mode_ = CanvasMode::Annotation;
        ink_.end();
        if (tool_ == EditTool::TextPen) tool_ = EditTool::Pointer;
    });
}

void CanvasController::clearDrawing() {
    telling([&] { ink_.clear(); });
}

void CanvasController::setPen(const InkPen& pen) {
    telling([&] { ink_.pen = pen; });
}

// --- capture mode

void CanvasController::beginCapture(std::function<void(Rect)> finished) {
    telling([&] {
        if (mode_ == CanvasMode::FreeDrawing) endDrawing();
        context_.host.finishTextEdit();
        context_.document.selectAnnotation(noAnnotation);
        context_.document.select({});
        captured_ = std::move(finished);
        mode_ = CanvasMode::Capture;
    });
}

void CanvasController::endCapture(bool take) {
    if (mode_ != CanvasMode::Capture) return;
    const Rect area = telling([&] {
        endDrag();
        const Rect chosen = take ? selectedArea() : Rect{};
        context_.document.select({});
        mode_ = CanvasMode::Annotation;
        return chosen;
    });
    if (const auto finished = std::exchange(captured_, nullptr)) finished(area);
}

// --- overlay

namespace {

void addHandles(CanvasOverlay& overlay, const Rect& rect) {
    for (int32_t i = 0; i < handleCount; ++i) overlay.handles.push_back(handlePoint(rect, i));
}

void addFrame(CanvasOverlay& overlay, const Rect& rect) {
    overlay.polyline = {{rect.left, rect.top},
                        {rect.right, rect.top},
                        {rect.right, rect.bottom},
                        {rect.left, rect.bottom},
                        {rect.left, rect.top}};
}

/// Where only a line is to be seen its ends are what can be pulled; a badge alone gets a frame, and so does the place
/// of what is all hidden.
void addMarksOf(CanvasOverlay& overlay, const TBBShape& shape) {
    if (!shape.anyVisible()) {
        addFrame(overlay, shape.shape.rectangle);
        return;
    }
    if (shape.hasHandles())
        addHandles(overlay, shape.handleRect());
    else if (!shape.line.isVisible())
        addFrame(overlay, shape.number.badge(shape).inflated(2));
    for (const TBBShape::FreeEnd& end : shape.freeLineEnds()) overlay.handles.push_back(end.at);
}

}  // namespace

CanvasOverlay CanvasController::overlay() const {
    CanvasOverlay overlay;
    if (mode_ == CanvasMode::FreeDrawing) return overlay;
    const Selection& selection = context_.document.selection();
    overlay.selection = selection.pixels(context_.document.size());
    overlay.dimOutside = mode_ == CanvasMode::Capture;
    if (polygon_.underWay()) {
        overlay.polyline = polygon_.corners();
        overlay.polyline.push_back(polygon_.pointer());
        overlay.handles.push_back(polygon_.corners().front());
    }
    const bool drawn = drag_ == nullptr || !drag_->drawsArea();
    if (hasHandles(selection) && drawn && !polygon_.underWay()) addHandles(overlay, selection.rect);
    if (const TBBShape* dragged = drag_ == nullptr ? nullptr : drag_->annotation()) {
        addMarksOf(overlay, *dragged);
        if (drag_->guided()) overlay.guides = dragged->guides();
    } else if (const std::optional<TBBShape> selected = selectedShape()) {
        addMarksOf(overlay, *selected);
    }
    return overlay;
}

}  // namespace glimmer
