#include "editor/canvas/annotation_drags.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace glimmer {

namespace {

/// A drag shorter than this, in screen pixels at 96 dots per inch, is a click.
constexpr int32_t clickReach = 3;
/// The rectangle that stands for a place at which a line points, in picture pixels.
constexpr int32_t anchorSize = 3;

}  // namespace

AnnotationDrag::AnnotationDrag(const CanvasContext& context, TBBShape pressed, Point at)
    : context_(context),
      shape_(std::move(pressed)),
      pressedAt_(at),
      gesture_(context.document.beginGesture()),
      labelAlone_(shape_.activePart() == Part::Text && shape_.activeHandle() == noHandle) {}

void AnnotationDrag::moveTo(Point at, Modifiers /*held*/) {
    if (at == pressedAt_ && !gesture_.used()) return;
    const TBBShape before = shape_;
    shape_.mouseMove(at);
    if (!(shape_ == before)) context_.change(shape_, gesture_);
}

void AnnotationDrag::finish() {
    shape_.mouseUp();
    if (!gesture_.used()) return;
    if (shape_.handlePart() == Part::Text) fitLabel(shape_, context_.host.textPainter());
    context_.change(shape_, gesture_);  // a rectangle that was turned over is right again
}

void AnnotationDrag::cancel() {
    if (gesture_.used()) context_.undo();
}

std::optional<CanvasCursor> AnnotationDrag::cursor() const {
    if (shape_.activeHandle() == noHandle) return CanvasCursor::Move;
    return cursorOverHandle(shape_.handleRect(), shape_.activeHandle());
}

LineEndDrag::LineEndDrag(const CanvasContext& context, TBBShape shape, bool front, Point at)
    : context_(context),
      shape_(std::move(shape)),
      front_(front),
      lastAt_(at),
      gesture_(context.document.beginGesture()) {}

void LineEndDrag::moveTo(Point at, Modifiers /*held*/) {
    shape_.moveFreeEnd(front_, at.x - lastAt_.x, at.y - lastAt_.y);
    lastAt_ = at;
    context_.change(shape_, gesture_);
}

void LineEndDrag::cancel() {
    if (gesture_.used()) context_.undo();
}

NewAnnotationDrag::NewAnnotationDrag(const CanvasContext& context, const ToolSettings& settings, LabelSession& label,
                                     EditTool tool, Point at)
    : context_(context),
      settings_(settings),
      label_(label),
      tool_(tool),
      pressedAt_(context.inside(at)),
      gesture_(context.document.beginGesture()) {
    context.document.select({});
}

void NewAnnotationDrag::moveTo(Point at, Modifiers held) {
    if (failed_) return;
    if (!shape_) {
        const int32_t far = context_.length(clickReach);
        if (std::abs(at.x - pressedAt_.x) < far && std::abs(at.y - pressedAt_.y) < far) return;
    }
    TBBShape shape = shape_ ? *shape_ : settings_.newAnnotation({}, tool_);
    if (makesLine())
        pointFrom(shape, held.shift ? straightened(pressedAt_, at) : at);
    else
        span(shape, held.shift ? squared(pressedAt_, at) : at);
    if (shape_)
        context_.change(std::move(shape), gesture_);
    else
        failed_ = !context_.add(std::move(shape), gesture_);
    const TBBShape* now = failed_ ? nullptr : context_.document.selectedAnnotation();
    if (now != nullptr) shape_ = *now;
}

void NewAnnotationDrag::span(TBBShape& shape, Point to) const {
    const Rect rect = spanned(pressedAt_, to);
    if (tool_ != EditTool::Text) {
        shape.setShapeRect(rect);
        return;
    }
    shape.shape.rectangle = rect;
    shape.text.settings.position = freeTextPosition;
    shape.text.rectangle = rect;
}

/// The line's front is where the press was; at its other end is the label, or what stands for one.
void NewAnnotationDrag::pointFrom(TBBShape& shape, Point end) const {
    const Rect anchor{pressedAt_.x, pressedAt_.y, pressedAt_.x + anchorSize, pressedAt_.y + anchorSize};
    shape.text.settings.position = freeTextPosition;
    shape.setShapeRect(anchor.moved(-anchorSize / 2, -anchorSize / 2));
    const bool alone = tool_ == EditTool::Line;
    const int32_t width = alone ? anchorSize : std::max(shape.text.rectangle.width(), anchorSize);
    const int32_t height = alone ? anchorSize : std::max(shape.text.rectangle.height(), anchorSize);
    shape.text.rectangle = Rect{0, 0, width, height}.moved(end.x - width / 2, end.y - height / 2);
}

void NewAnnotationDrag::finish() {
    if (!shape_) {
        if (failed_ || tool_ != EditTool::Text) return;
        TBBShape shape =
            settings_.newAnnotation({pressedAt_.x, pressedAt_.y, pressedAt_.x + 1, pressedAt_.y + 1}, tool_);
        shape.text.settings.position = freeTextPosition;
        const Rect label = shape.text.rectangle;
        shape.text.rectangle = label.moved(pressedAt_.x - label.left, pressedAt_.y - label.top);
        if (!context_.add(std::move(shape), gesture_)) return;
        shape_ = *context_.document.selectedAnnotation();
    }
    if (shape_->text.isVisible()) label_.begin(shape_->id(), gesture_);
}

void NewAnnotationDrag::cancel() {
    if (gesture_.used()) context_.undo();
}

}  // namespace glimmer
