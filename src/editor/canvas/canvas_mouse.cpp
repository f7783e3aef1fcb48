// The mouse on the canvas: what a press begins, what a drag does, how it ends.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "editor/canvas/canvas_controller.h"
#include "editor/commands/add_annotation.h"
#include "editor/commands/change_annotation.h"

namespace glimmer {

namespace {

/// A drag shorter than this, in screen pixels at 96 dots per inch, is a click.
constexpr int32_t clickReach = 3;
/// The rectangle that stands for a place at which a line points, in picture pixels.
constexpr int32_t anchorSize = 3;

/// The rectangle of both pixels and all between them.
Rect spanned(Point a, Point b) {
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x) + 1, std::max(a.y, b.y) + 1};
}

/// The corner of a square or of a straight line that is nearest to the mouse.
Point squared(Point from, Point to) {
    const int32_t side = std::max(std::abs(to.x - from.x), std::abs(to.y - from.y));
    return {from.x + (to.x < from.x ? -side : side), from.y + (to.y < from.y ? -side : side)};
}

Point straightened(Point from, Point to) {
    const int32_t dx = std::abs(to.x - from.x);
    const int32_t dy = std::abs(to.y - from.y);
    if (dx > 2 * dy) return {to.x, from.y};
    if (dy > 2 * dx) return {from.x, to.y};
    return squared(from, to);
}

}  // namespace

Point CanvasController::inside(Point at) const {
    const Size size = document_.size();
    return {std::clamp(at.x, 0, size.width - 1), std::clamp(at.y, 0, size.height - 1)};
}

int32_t CanvasController::hitSize() const { return view_.lengthInPicture(handleHitSize(dotsPerInch)); }

HitReach CanvasController::reach() const { return {view_.lengthInPicture(4 * dotsPerInch / 96)}; }

bool CanvasController::startsArea() const {
    return mode_ == CanvasMode::Capture || tool_ == EditTool::Pointer || tool_ == EditTool::TextShapeEllipse;
}

void CanvasController::press(Point at, Modifiers held) {
    if (drag_ != Drag::None) finishDrag();
    host_.finishTextEdit();
    keyGesture_ = 0;
    pressedAt_ = lastAt_ = at;
    gesture_ = document_.newGesture();
    gestureUsed_ = false;
    if (mode_ == CanvasMode::FreeDrawing) {
        drag_ = Drag::Ink;
        host_.inkChanged(ink_->begin(at, eraser, inkColour, inkWidth));
        return;
    }
    if (mode_ == CanvasMode::Capture) {
        if (!pressSelection(at, held)) beginArea(at, held);
        return;
    }
    if (!polygon_.empty()) {
        polygonPress(at);
        return;
    }
    // Ctrl means the selected area, whatever lies there.
    if (!(held.ctrl && startsArea())) {
        if (pressLineEnd(at) || pressAnnotation(at, true)) return;
        if (pressSelection(at, held)) return;
        if (pressAnnotation(at, false)) return;
    }
    document_.selectAnnotation(noAnnotation);
    switch (tool_) {
        case EditTool::Pointer:
        case EditTool::TextShapeEllipse:
            beginArea(at, held);
            break;
        case EditTool::TextShapePolygon:
            polygonPress(at);
            break;
        case EditTool::WindowSelector:
            document_.select(Selection::rectangle(blockAt(document_.background(), inside(at))));
            drag_ = Drag::Idle;
            break;
        case EditTool::TextPen:
            beginDrawing(noAnnotation);
            drag_ = Drag::Ink;
            host_.inkChanged(ink_->begin(at, eraser, inkColour, inkWidth));
            break;
        default:
            beginShape(at);
    }
    host_.stateChanged();
    host_.overlayChanged();
}

bool CanvasController::pressLineEnd(Point at) {
    const TBBShape* selected = document_.selectedAnnotation();
    if (selected == nullptr) return false;
    const int32_t reach = hitSize() / 2;
    for (const TBBShape::FreeEnd& end : selected->freeLineEnds()) {
        if (std::abs(end.at.x - at.x) > reach || std::abs(end.at.y - at.y) > reach) continue;
        dragged_ = *selected;
        frontEnd_ = end.front;
        drag_ = Drag::LineEnd;
        document_.select({});
        return true;
    }
    return false;
}

/// The selected annotation, with the part as the active one that was pressed last.
std::optional<TBBShape> CanvasController::selectedShape() const {
    const TBBShape* selected = document_.selectedAnnotation();
    if (selected == nullptr) return std::nullopt;
    TBBShape shape = *selected;
    if (shape.id() == activeId_) shape.setActivePart(activePart_);
    return shape;
}

/// The handles of the selected annotation, or the body of the topmost one at the point.
bool CanvasController::pressAnnotation(Point at, bool onlySelected) {
    std::optional<TBBShape> target;
    if (onlySelected) {
        target = selectedShape();
        if (!target || !target->grabHandleAt(at, hitSize())) return false;
    } else {
        const TBBShape* top = document_.annotations().topAt(at, reach());
        if (top == nullptr) return false;
        target = *top;
        // A press anywhere on the annotation asks all parts, so the active one must be a visible one.
        if (const std::optional<Part> part = target->partAt(at, reach())) target->setActivePart(*part);
    }
    if (!target->mouseDown(at, reach())) return false;
    dragged_ = std::move(target);
    activePart_ = dragged_->activePart();
    activeId_ = dragged_->id();
    document_.select({});
    document_.selectAnnotation(dragged_->id());
    drag_ = Drag::Annotation;
    showGuides_ = dragged_->activePart() == Part::Text && dragged_->activeHandle() == noHandle;
    host_.stateChanged();
    host_.overlayChanged();
    return true;
}

/// The handles of a selected rectangle, and its inside.
bool CanvasController::pressSelection(Point at, Modifiers held) {
    const Selection& selection = document_.selection();
    if (selection.empty() || held.ctrl) return false;
    const bool framed = selection.kind == Selection::Kind::Rectangle || selection.kind == Selection::Kind::Ellipse;
    formerSelection_ = selection;
    if (framed) {
        areaHandle_ = handleAt(selection.rect, at, hitSize());
        if (areaHandle_ != noHandle) {
            drag_ = Drag::ResizeArea;
            return true;
        }
    }
    if (!startsArea() || !selection.pixels(document_.size()).contains(at)) return false;
    // An annotation that lies there is nearer than the area under it.
    if (mode_ == CanvasMode::Annotation && document_.annotations().topAt(at, reach()) != nullptr) return false;
    drag_ = Drag::MoveArea;
    return true;
}

void CanvasController::beginArea(Point at, Modifiers held) {
    adding_ = held.ctrl && !document_.selection().empty();
    formerSelection_ = document_.selection();
    if (!adding_) document_.select({});
    pressedAt_ = inside(at);
    drag_ = Drag::Area;
}

void CanvasController::dragArea(Point at, Modifiers held) {
    const Size size = document_.size();
    if (drag_ == Drag::Area) {
        Point corner = at;
        if (held.shift) corner = squared(pressedAt_, at);
        const Rect rect = spanned(pressedAt_, inside(corner));
        const bool ellipse = tool_ == EditTool::TextShapeEllipse && mode_ == CanvasMode::Annotation;
        Selection area = ellipse ? Selection::ellipse(rect) : Selection::rectangle(rect);
        if (adding_) area = Selection::freeForm(formerSelection_.pixels(size).united(area.pixels(size)));
        document_.select(std::move(area));
        return;
    }
    Selection area = formerSelection_;
    const Point way{at.x - pressedAt_.x, at.y - pressedAt_.y};
    if (drag_ == Drag::ResizeArea) {
        area.rect = resizedByHandle(area.rect, areaHandle_, way.x, way.y).normalized();
        area.rect = area.rect.intersected({0, 0, size.width, size.height});
        if (area.rect.empty()) return;
    } else {
        // The area stays on the picture.
        const Rect bounds = area.bounds(size);
        const int32_t dx = std::clamp(way.x, -bounds.left, size.width - bounds.right);
        const int32_t dy = std::clamp(way.y, -bounds.top, size.height - bounds.bottom);
        area.rect = area.rect.moved(dx, dy);
        for (Point& corner : area.corners) corner = {corner.x + dx, corner.y + dy};
        area.region = area.region.moved(dx, dy);
    }
    document_.select(std::move(area));
}

void CanvasController::polygonPress(Point at) {
    const Point corner = inside(at);
    drag_ = Drag::Idle;
    if (polygon_.size() >= 3) {
        const Point first = polygon_.front();
        if (std::abs(first.x - corner.x) <= hitSize() / 2 && std::abs(first.y - corner.y) <= hitSize() / 2) {
            finishPolygon();
            return;
        }
    }
    if (polygon_.empty()) document_.select({});
    if (polygon_.empty() || polygon_.back() != corner) polygon_.push_back(corner);
    hover_ = corner;
    host_.overlayChanged();
}

void CanvasController::finishPolygon() {
    document_.select(Selection::polygon(std::exchange(polygon_, {})));
    host_.overlayChanged();
    host_.stateChanged();
}

void CanvasController::beginShape(Point at) {
    document_.select({});
    drag_ = tool_ == EditTool::TextLine || tool_ == EditTool::Line ? Drag::NewLine : Drag::NewShape;
    dragged_.reset();
    pressedAt_ = inside(at);
}

void CanvasController::dragShape(Point at, Modifiers held) {
    if (!dragged_) {
        const int32_t far = view_.lengthInPicture(clickReach * dotsPerInch / 96);
        if (std::abs(at.x - pressedAt_.x) < far && std::abs(at.y - pressedAt_.y) < far) return;
    }
    TBBShape shape = dragged_ ? *dragged_ : newShape({});
    if (drag_ == Drag::NewShape) {
        const Rect rect = spanned(pressedAt_, held.shift ? squared(pressedAt_, at) : at);
        if (tool_ == EditTool::Text) {
            shape.shape.rectangle = rect;
            shape.text.settings.position = freeTextPosition;
            shape.text.rectangle = rect;
        } else {
            shape.setShapeRect(rect);
        }
    } else {
        const Point end = held.shift ? straightened(pressedAt_, at) : at;
        const Rect anchor{pressedAt_.x, pressedAt_.y, pressedAt_.x + anchorSize, pressedAt_.y + anchorSize};
        shape.text.settings.position = freeTextPosition;
        shape.setShapeRect(anchor.moved(-anchorSize / 2, -anchorSize / 2));
        const Rect label = shape.text.rectangle;
        const int32_t width = tool_ == EditTool::Line ? anchorSize : std::max(label.width(), anchorSize);
        const int32_t height = tool_ == EditTool::Line ? anchorSize : std::max(label.height(), anchorSize);
        shape.text.rectangle = {end.x - width / 2, end.y - height / 2, end.x - width / 2 + width,
                                end.y - height / 2 + height};
    }
    if (dragged_) {
        if (!(shape == *dragged_)) change(shape, gesture_);
    } else if (!addShape(shape, gesture_)) {
        drag_ = Drag::Idle;
        return;
    }
    if (const TBBShape* now = document_.selectedAnnotation()) dragged_ = *now;
}

void CanvasController::finishShape() {
    if (!dragged_) {
        // A click: the Text tool puts a label there, the others do nothing but deselect.
        if (tool_ != EditTool::Text) return;
        TBBShape shape = newShape({pressedAt_.x, pressedAt_.y, pressedAt_.x + 1, pressedAt_.y + 1});
        shape.text.settings.position = freeTextPosition;
        const Rect label = shape.text.rectangle;
        shape.text.rectangle = label.moved(pressedAt_.x - label.left, pressedAt_.y - label.top);
        if (!addShape(shape, gesture_)) return;
        dragged_ = *document_.selectedAnnotation();
    }
    const AnnotationId id = dragged_->id();
    const bool text = dragged_->text.isVisible();
    dragged_.reset();
    if (text) host_.beginTextEdit(id);
}

void CanvasController::move(Point at, Modifiers held) {
    lastAt_ = at;
    switch (drag_) {
        case Drag::None:
            if (!polygon_.empty() && inside(at) != hover_) {
                hover_ = inside(at);
                host_.overlayChanged();
            }
            return;
        case Drag::Idle:
            return;
        case Drag::Area:
        case Drag::MoveArea:
        case Drag::ResizeArea:
            dragArea(at, held);
            break;
        case Drag::Ink:
            host_.inkChanged(ink_->moveTo(at));
            return;
        case Drag::NewShape:
        case Drag::NewLine:
            dragShape(at, held);
            break;
        case Drag::LineEnd:
            dragged_->moveFreeEnd(frontEnd_, at.x - pressedAt_.x, at.y - pressedAt_.y);
            pressedAt_ = at;
            change(*dragged_, gesture_);
            break;
        case Drag::Annotation: {
            if (at == pressedAt_ && !gestureUsed_) return;
            const TBBShape before = *dragged_;
            dragged_->mouseMove(at);
            if (!(*dragged_ == before)) change(*dragged_, gesture_);
            break;
        }
    }
    host_.overlayChanged();
}

void CanvasController::release(Point at, Modifiers held) {
    if (drag_ == Drag::None) return;
    move(at, held);
    finishDrag();
}

void CanvasController::captureLost() {
    if (drag_ != Drag::None) finishDrag();
}

void CanvasController::finishDrag() {
    const Drag ended = std::exchange(drag_, Drag::None);
    showGuides_ = false;
    switch (ended) {
        case Drag::Ink:
            ink_->end();
            storeInk();
            break;
        case Drag::Annotation: {
            dragged_->mouseUp();
            if (dragged_->handlePart() == Part::Text) fitLabel(*dragged_, host_.textPainter());
            // The rectangle may have been inverted.
            if (gestureUsed_) change(*dragged_, gesture_);
            dragged_.reset();
            break;
        }
        case Drag::LineEnd:
            dragged_.reset();
            break;
        case Drag::NewShape:
        case Drag::NewLine:
            finishShape();
            break;
        case Drag::Area: {
            // A click on the empty canvas.
            const Rect rect = document_.selection().bounds(document_.size());
            const int32_t far = view_.lengthInPicture(2);
            if (!adding_ && rect.width() <= far && rect.height() <= far) document_.select({});
            break;
        }
        default:
            break;
    }
    host_.overlayChanged();
    host_.stateChanged();
}

void CanvasController::cancelDrag() {
    const Drag ended = std::exchange(drag_, Drag::None);
    showGuides_ = false;
    dragged_.reset();
    if (ended == Drag::Ink) {
        host_.inkChanged(ink_->undoStroke());
        storeInk();
    } else if (ended == Drag::Area || ended == Drag::MoveArea || ended == Drag::ResizeArea) {
        document_.select(formerSelection_);
    } else if (gestureUsed_) {
        if (Status undone = document_.undo(); !undone) host_.failed(undone.message());
    }
    host_.overlayChanged();
    host_.stateChanged();
}

void CanvasController::doubleClick(Point at, Modifiers held) {
    if (mode_ == CanvasMode::Annotation && !polygon_.empty()) {
        finishPolygon();
        return;
    }
    if (mode_ == CanvasMode::Annotation) {
        const TBBShape* target = document_.annotations().topAt(at, reach());
        const std::optional<Part> part = target == nullptr ? std::nullopt : target->partAt(at, reach());
        if (part) {
            const AnnotationId id = target->id();
            const bool ink =
                *part == Part::Shape && target->shape.settings.kind == ShapeKind::Drawing && !target->text.isVisible();
            if (drag_ != Drag::None) finishDrag();  // may add an annotation, so that `target` is no longer there
            document_.selectAnnotation(id);
            if (ink)
                beginDrawing(id);
            else
                execute(EditCommand::EditText);
            return;
        }
    }
    press(at, held);
}

AnnotationId CanvasController::annotationAt(Point at) const {
    const TBBShape* shape = document_.annotations().topAt(at, reach());
    return shape == nullptr ? noAnnotation : shape->id();
}

bool CanvasController::rightPress(Point at) {
    if (mode_ == CanvasMode::FreeDrawing) {
        endDrawing();
        return false;
    }
    if (mode_ == CanvasMode::Capture) return false;
    if (drag_ != Drag::None) finishDrag();
    host_.finishTextEdit();
    if (!polygon_.empty()) {
        finishPolygon();
        return false;
    }
    const TBBShape* target = document_.annotations().topAt(at, reach());
    if (target != nullptr) document_.select({});
    // The menu's commands act on what is under the pointer; elsewhere what is selected stays.
    if (target != nullptr) document_.selectAnnotation(target->id());
    host_.stateChanged();
    host_.overlayChanged();
    return true;
}

CanvasCursor CanvasController::cursorAt(Point at) const {
    if (mode_ == CanvasMode::FreeDrawing) return eraser ? CanvasCursor::Eraser : CanvasCursor::Pen;
    const auto handle = [](const Rect& rect, int32_t number) {
        switch (handleCursor(rect, number)) {
            case HandleCursor::NorthWestSouthEast:
                return CanvasCursor::NorthWestSouthEast;
            case HandleCursor::NorthEastSouthWest:
                return CanvasCursor::NorthEastSouthWest;
            case HandleCursor::Vertical:
                return CanvasCursor::Vertical;
            case HandleCursor::Horizontal:
                break;
        }
        return CanvasCursor::Horizontal;
    };
    if (mode_ == CanvasMode::Annotation) {
        if (drag_ == Drag::Annotation) {
            if (dragged_->activeHandle() == noHandle) return CanvasCursor::Move;
            return handle(dragged_->handleRect(), dragged_->activeHandle());
        }
        if (drag_ == Drag::LineEnd) return CanvasCursor::Move;
        if (const std::optional<TBBShape> shape = selectedShape(); shape && shape->anyVisible()) {
            const int32_t reach = hitSize() / 2;
            for (const TBBShape::FreeEnd& end : shape->freeLineEnds())
                if (std::abs(end.at.x - at.x) <= reach && std::abs(end.at.y - at.y) <= reach) return CanvasCursor::Move;
            const int32_t number = shape->hasHandles() ? handleAt(shape->handleRect(), at, hitSize()) : noHandle;
            if (number != noHandle) return handle(shape->handleRect(), number);
        }
    }
    const Selection& selection = document_.selection();
    if (drag_ == Drag::ResizeArea) return handle(selection.rect, areaHandle_);
    if (drag_ == Drag::MoveArea) return CanvasCursor::Move;
    if (drag_ == Drag::None && !selection.empty()) {
        if (selection.kind == Selection::Kind::Rectangle || selection.kind == Selection::Kind::Ellipse) {
            const int32_t number = handleAt(selection.rect, at, hitSize());
            if (number != noHandle) return handle(selection.rect, number);
        }
    }
    if (drag_ == Drag::None && mode_ == CanvasMode::Annotation && polygon_.empty()) {
        if (document_.annotations().topAt(at, reach()) != nullptr) return CanvasCursor::Move;
    }
    if (drag_ == Drag::None && !selection.empty() && startsArea() && selection.pixels(document_.size()).contains(at))
        return CanvasCursor::Move;
    const Size size = document_.size();
    return Rect{0, 0, size.width, size.height}.contains(at) ? CanvasCursor::Cross : CanvasCursor::Arrow;
}

namespace {

/// Whether all pixels of the line or column have one colour; one outside the picture counts as framed.
bool uniform(const TBitmap& picture, const Rect& line) {
    const Rect part = line.intersected(picture.bounds());
    if (part.empty()) return true;
    const uint8_t* first = picture.row(part.top) + static_cast<size_t>(part.left) * 4;
    for (int32_t y = part.top; y < part.bottom; ++y) {
        const uint8_t* p = picture.row(y) + static_cast<size_t>(part.left) * 4;
        for (int32_t x = part.left; x < part.right; ++x, p += 4)
            if (std::memcmp(p, first, 3) != 0) return false;
    }
    return true;
}

}  // namespace

Rect blockAt(const TBitmap& picture, Point at) {
    constexpr int32_t start = 12;
    const Rect all = picture.bounds();
    Rect block = Rect{at.x, at.y, at.x + 1, at.y + 1}.inflated(start).intersected(all);
    for (bool grew = true; grew;) {
        grew = false;
        const auto extend = [&](int32_t& side, int32_t by, int32_t limit, const auto& next) {
            while (side != limit && !uniform(picture, next())) {
                side += by;
                grew = true;
            }
        };
        extend(block.left, -1, 0, [&] { return Rect{block.left - 1, block.top, block.left, block.bottom}; });
        extend(block.right, 1, all.right, [&] { return Rect{block.right, block.top, block.right + 1, block.bottom}; });
        extend(block.top, -1, 0, [&] { return Rect{block.left, block.top - 1, block.right, block.top}; });
        extend(block.bottom, 1, all.bottom, [&] {
            return Rect{block.left, block.bottom, block.right, block.bottom + 1};
        });
    }
    return block;
}

}  // namespace glimmer
