#include "editor/canvas/canvas_controller.h"

#include <algorithm>
#include <utility>

#include "common/assertion.h"
#include "editor/commands/add_annotation.h"
#include "editor/commands/change_annotation.h"
#include "editor/commands/delete_annotation.h"

namespace glimmer {

CanvasController::CanvasController(CaptureDocument& document, CanvasView& view, CanvasHost& host)
    : document_(document), view_(view), host_(host), settings_(*predefinedStyle("Default")) {}

CanvasController::~CanvasController() = default;

bool CanvasController::run(std::unique_ptr<UndoCommand> command, Gesture gesture) {
    const Status done = document_.run(std::move(command), gesture);
    if (!done) host_.failed(done.message());
    return done.ok();
}

bool CanvasController::change(TBBShape shape, Gesture gesture) {
    const TBBShape* current = document_.annotations().find(shape.id());
    GLIMMER_ASSERT(current != nullptr, "pShape != NULL", "uEditor");
    // A drag that has not moved anything leaves no step.
    if (*current == shape) return true;
    if (gesture != 0 && gesture == gesture_) gestureUsed_ = true;
    return run(std::make_unique<ChangeAnnotation>(std::move(shape)), gesture);
}

void CanvasController::setTool(EditTool tool) {
    if (mode_ == CanvasMode::FreeDrawing) endDrawing();
    host_.finishTextEdit();
    if (drag_ != Drag::None) finishDrag();
    polygon_.clear();
    tool_ = tool;
    host_.overlayChanged();
    host_.stateChanged();
}

// --- settings

TShapeStyle CanvasController::shownSettings() const {
    const TBBShape* shape = document_.selectedAnnotation();
    return shape == nullptr ? settings_ : shape->settings();
}

void CanvasController::changeSettings(const std::function<void(TShapeStyle&)>& setting, Gesture gesture) {
    setting(settings_);
    clampSettings(settings_);
    if (const TBBShape* selected = document_.selectedAnnotation()) {
        TBBShape shape = *selected;
        TShapeStyle style = shape.settings();
        setting(style);
        clampSettings(style);
        // Ink stays ink: only free drawing makes a picture.
        if (style.shape.kind == ShapeKind::Drawing && shape.shape.drawing == nullptr)
            style.shape.kind = shape.shape.settings.kind;
        shape.shape.settings = style.shape;
        shape.text.settings = style.text;
        shape.line.settings = style.line;
        shape.number.settings = style.number;
        shape.styleName = style.name;
        fitChanged(*selected, shape);
        if (shape.number.isVisible() && !selected->number.isVisible()) takeFreeNumber(shape);
        change(std::move(shape), gesture);
        host_.overlayChanged();
    }
    host_.stateChanged();
}

/// A number that appears: its own, unless that is another one's already or would leave a gap; then the next one.
void CanvasController::takeFreeNumber(TBBShape& shape) const {
    int32_t last = 0;
    bool taken = false;
    for (const TBBShape& other : document_.annotations()) {
        if (other.id() == shape.id() || !other.number.isVisible()) continue;
        last = std::max(last, other.number.number);
        taken |= other.number.number == shape.number.number;
    }
    if (taken || shape.number.number > last + 1) shape.number.number = clampStepNumber(last + 1);
}

void CanvasController::showPart(Part part, bool shown) {
    changeSettings([&](TShapeStyle& style) {
        bool* const visible[] = {&style.shape.visible, &style.text.visible, &style.line.visible, &style.number.visible};
        *visible[static_cast<size_t>(part)] = shown;
    });
}

void CanvasController::applyStyle(const TShapeStyle& style, bool withVisibility) {
    const TShapeStyle former = settings_;
    settings_ = style;
    settings_.text.position = former.text.position;
    settings_.number.position = former.number.position;
    if (!withVisibility) {
        settings_.shape.visible = former.shape.visible;
        settings_.text.visible = former.text.visible;
        settings_.line.visible = former.line.visible;
        settings_.number.visible = former.number.visible;
    }
    if (const TBBShape* selected = document_.selectedAnnotation()) {
        TBBShape shape = *selected;
        shape.applyStyle(style, withVisibility);
        fitChanged(*selected, shape);
        change(std::move(shape));
        host_.overlayChanged();
    }
    host_.stateChanged();
}

void CanvasController::changeKind(ShapeKind kind) {
    if (kind == ShapeKind::Drawing) {
        if (mode_ != CanvasMode::FreeDrawing) beginDrawing(document_.selectedId());
        return;
    }
    changeSettings([kind](TShapeStyle& style) { style.shape.kind = kind; });
}

/// Fits the label to a changed text or font. One that is just as wide as its text was stays so; one that the user gave
/// a width keeps it and wraps.
void CanvasController::fitChanged(const TBBShape& before, TBBShape& after) {
    const auto collapse = [](TBBShape& shape) {
        Rect& label = shape.text.rectangle;
        label = {label.left, label.top, label.left, label.top};
    };
    TBBShape natural = before;
    collapse(natural);
    fitLabel(natural, host_.textPainter());
    if (natural.text.rectangle.width() == before.text.rectangle.width()) collapse(after);
    fitLabel(after, host_.textPainter());
}

// --- new annotations

TBBShape CanvasController::newShape(const Rect& rect) const {
    TShapeStyle style = settings_;
    if (style.shape.kind == ShapeKind::Drawing) style.shape.kind = ShapeKind::FilledRectangle;
    switch (tool_) {
        case EditTool::TextLine:
            style.shape.visible = false;
            style.text.visible = style.line.visible = true;
            break;
        case EditTool::Text:
            style.shape.visible = style.line.visible = false;
            style.text.visible = true;
            break;
        case EditTool::RectHighlight:
            style.shape.visible = true;
            style.text.visible = style.line.visible = false;
            style.shape.kind = ShapeKind::FilledRectangle;
            break;
        case EditTool::Line:
            style.line.visible = true;
            style.shape.visible = style.text.visible = false;
            break;
        default:
            break;
    }
    TBBShape shape(style, rect);
    shape.text.settings.position = style.text.position;
    shape.number.settings.position = style.number.position;
    shape.number.number = document_.annotations().nextNumber();
    if (shape.number.isVisible()) takeFreeNumber(shape);
    fitLabel(shape, host_.textPainter());
    return shape;
}

bool CanvasController::addShape(TBBShape shape, Gesture gesture) {
    if (gesture == gesture_) gestureUsed_ = true;
    if (!run(std::make_unique<AddAnnotation>(std::move(shape)), gesture)) return false;
    document_.selectAnnotation(document_.annotations()[document_.annotations().size() - 1].id());
    return true;
}

bool CanvasController::insertAnnotations(std::vector<TBBShape> shapes, Point shift) {
    const Gesture together = document_.newGesture();
    bool added = false;
    for (TBBShape& shape : shapes) {
        shape.setId(noAnnotation);
        shape.moveBy(shift.x, shift.y);
        added |= addShape(std::move(shape), together);
    }
    document_.select({});
    if (const TBBShape* last = document_.selectedAnnotation()) host_.reveal(last->bounds());
    host_.stateChanged();
    host_.overlayChanged();
    return added;
}

bool CanvasController::dropAnnotations(std::vector<TBBShape> shapes, Point at) {
    if (mode_ != CanvasMode::Annotation) return false;
    host_.finishTextEdit();
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
            host_.failed(converted.message());
            return false;
        }
        picture = converted.take();
    }
    if (mode_ == CanvasMode::FreeDrawing) endDrawing();
    host_.finishTextEdit();
    const Rect seen = view_.visible();
    const Size size = picture.size();
    const Point at{std::max(0, middle(seen.left, seen.right) - size.width / 2),
                   std::max(0, middle(seen.top, seen.bottom) - size.height / 2)};
    TBBShape shape = pictureAnnotation(settings_, std::move(picture), at);
    shape.number.number = document_.annotations().nextNumber();
    return insertAnnotations({std::move(shape)}, {});
}

// --- text

void CanvasController::textEdited(AnnotationId id, const std::string& text) {
    const TBBShape* current = document_.annotations().find(id);
    if (current == nullptr) return;
    if (edited_ != id) {
        edited_ = id;
        // Typing into a label that has just been drawn belongs to its drawing.
        editGesture_ = gestureUsed_ ? gesture_ : document_.newGesture();
    }
    TBBShape shape = *current;
    shape.text.text = text;
    fitChanged(*current, shape);
    if (shape == *current) return;
    change(std::move(shape), editGesture_);
    host_.overlayChanged();
}

void CanvasController::endTextEdit(AnnotationId id) {
    edited_ = noAnnotation;
    const TBBShape* current = document_.annotations().find(id);
    if (current != nullptr && current->text.text.empty() && current->text.isVisible()) {
        // An empty label is a blank box that says nothing: only the other parts stay.
        const TBBShape before = *current;
        TBBShape shape = before;
        shape.text.setVisible(false);
        shape.line.setVisible(shape.line.isVisible() && !shape.shape.isVisible());
        if (shape.anyVisible())
            change(std::move(shape), editGesture_ != 0 ? editGesture_ : gesture_);
        else
            dropEmptyLabel();
    }
    editGesture_ = 0;
    gestureUsed_ = false;
    document_.endGesture();
    host_.stateChanged();
    host_.overlayChanged();
}

/// The selected annotation would have been a label and has no text: it is as if it had never been made, unless it was.
void CanvasController::dropEmptyLabel() {
    if (gestureUsed_ && document_.history().newestIs(gesture_)) {
        if (Status undone = document_.undo(); !undone) host_.failed(undone.message());
    } else {
        execute(EditCommand::DeleteAnnotation);
    }
}

// --- free drawing

void CanvasController::beginDrawing(AnnotationId id) {
    host_.finishTextEdit();
    if (drag_ != Drag::None) finishDrag();
    auto ink = std::make_unique<InkLayer>(document_.size());
    const TBBShape* shape = document_.annotations().find(id);
    if (shape != nullptr && shape->shape.drawing != nullptr) {
        if (Status loaded = ink->load(*shape->shape.drawing, shape->shape.rectangle); !loaded) {
            host_.failed(loaded.message());
            return;
        }
    }
    document_.select({});
    ink_ = std::move(ink);
    inkedId_ = shape == nullptr ? noAnnotation : id;
    beforeInk_.reset();
    if (shape != nullptr) beforeInk_ = *shape;
    document_.selectAnnotation(inkedId_);
    inkGesture_ = document_.newGesture();
    inkStored_ = false;
    mode_ = CanvasMode::FreeDrawing;
    host_.inkChanged(Rect{0, 0, document_.size().width, document_.size().height});
    host_.stateChanged();
    host_.overlayChanged();
}

/// Brings the capture's annotation to what is drawn: after each stroke, so that no long drawing is lost with the
/// program. An empty drawing takes its annotation away again, or leaves the one it is drawn in as it was.
void CanvasController::storeInk() {
    if (!ink_->changed()) {
        takeBackInk();
        host_.stateChanged();
        return;
    }
    Result<InkLayer::Finished> drawn = ink_->finished();
    if (!drawn) {
        host_.failed(drawn.message());
        return;
    }
    const TBBShape* existing = document_.annotations().find(inkedId_);
    if (drawn->picture.empty()) {
        takeBackInk();
    } else if (existing != nullptr) {
        TBBShape shape = *existing;
        shape.shape.settings.kind = ShapeKind::Drawing;
        shape.shape.settings.visible = true;
        shape.setShapeRect(drawn->rect);
        shape.shape.drawing = std::make_shared<const TBitmap>(std::move(drawn->picture));
        const uint64_t before = document_.revision();
        change(std::move(shape), inkGesture_);
        inkStored_ |= document_.revision() != before;
    } else {
        TBBShape shape = newShape(drawn->rect);
        shape.shape.settings.kind = ShapeKind::Drawing;
        shape.shape.settings.visible = true;
        // The label comes with "Apply".
        shape.text.setVisible(false);
        shape.line.setVisible(false);
        shape.shape.drawing = std::make_shared<const TBitmap>(std::move(drawn->picture));
        inkStored_ = addShape(std::move(shape), inkGesture_);
        if (inkStored_) inkedId_ = document_.selectedId();
    }
    host_.stateChanged();
}

/// The annotation is again as it was before the drawing began. Something else, a new name for the capture, may have
/// been done since the last stroke; that stays.
void CanvasController::takeBackInk() {
    if (!std::exchange(inkStored_, false)) return;
    if (document_.history().newestIs(inkGesture_)) {
        if (Status undone = document_.undo(); !undone) host_.failed(undone.message());
    } else if (beforeInk_) {
        change(*beforeInk_);
    } else {
        run(std::make_unique<DeleteAnnotation>(inkedId_));
    }
    if (!beforeInk_) inkedId_ = noAnnotation;
}

/// All ink of a drawing was cleared or erased: what else the annotation shows stays.
void CanvasController::settleErased(AnnotationId id) {
    TBBShape shape = *document_.annotations().find(id);
    if (shape.shape.settings.kind != ShapeKind::Drawing) return;
    shape.shape.setVisible(false);
    if (!shape.anyVisible()) {
        execute(EditCommand::DeleteAnnotation);
        return;
    }
    TShapeDescriptor erased = shape.describe();
    erased.style.shape.visible = true;
    erased.drawing.reset();
    clampDescriptor(erased);  // gives it an empty picture
    change(TBBShape(erased));
}

void CanvasController::endDrawing() {
    GLIMMER_ASSERT(ink_ != nullptr, "pPicture != NULL", "uEditor");
    if (drag_ == Drag::Ink) ink_->end();
    drag_ = Drag::None;
    storeInk();
    const AnnotationId id = std::exchange(inkedId_, noAnnotation);
    const bool erased = ink_->changed() && ink_->blank();
    mode_ = CanvasMode::Annotation;
    const std::unique_ptr<InkLayer> over = std::move(ink_);
    document_.selectAnnotation(id);
    if (const TBBShape* drawn = document_.annotations().find(id)) {
        if (erased) {
            settleErased(id);
        } else if (!beforeInk_) {
            gesture_ = inkGesture_;
            TBBShape shape = *drawn;
            shape.text.setVisible(settings_.text.visible);
            shape.line.setVisible(settings_.line.visible);
            change(std::move(shape), inkGesture_);
            gestureUsed_ = true;
            if (settings_.text.visible) host_.beginTextEdit(id);
        }
    }
    if (tool_ == EditTool::TextPen) tool_ = EditTool::Pointer;
    host_.inkChanged(Rect{0, 0, document_.size().width, document_.size().height});
    host_.stateChanged();
    host_.overlayChanged();
}

void CanvasController::clearDrawing() {
    if (ink_ == nullptr) return;
    host_.inkChanged(ink_->clear());
    storeInk();
}

// --- capture mode

void CanvasController::beginCapture(std::function<void(Rect)> finished) {
    if (mode_ == CanvasMode::FreeDrawing) endDrawing();
    host_.finishTextEdit();
    document_.selectAnnotation(noAnnotation);
    document_.select({});
    captured_ = std::move(finished);
    mode_ = CanvasMode::Capture;
    host_.stateChanged();
    host_.overlayChanged();
}

void CanvasController::endCapture(bool take) {
    if (mode_ != CanvasMode::Capture) return;
    if (drag_ != Drag::None) finishDrag();
    const Rect area = take ? document_.selection().bounds(document_.size()) : Rect{};
    document_.select({});
    mode_ = CanvasMode::Annotation;
    host_.stateChanged();
    host_.overlayChanged();
    if (const auto finished = std::exchange(captured_, nullptr)) finished(area);
}

// --- overlay

CanvasOverlay CanvasController::overlay() const {
    CanvasOverlay overlay;
    if (mode_ == CanvasMode::FreeDrawing) return overlay;
    const Selection& selection = document_.selection();
    overlay.selection = selection.pixels(document_.size());
    overlay.dimOutside = mode_ == CanvasMode::Capture;
    overlay.polyline = polygon_;
    if (!polygon_.empty()) {
        overlay.polyline.push_back(hover_);
        overlay.handles.push_back(polygon_.front());
    }
    const auto addHandles = [&](const Rect& rect) {
        for (int32_t i = 0; i < handleCount; ++i) overlay.handles.push_back(handlePoint(rect, i));
    };
    const bool framed = selection.kind == Selection::Kind::Rectangle || selection.kind == Selection::Kind::Ellipse;
    if (framed && drag_ != Drag::Area && polygon_.empty()) addHandles(selection.rect);
    const std::optional<TBBShape> shape = dragged_ ? dragged_ : selectedShape();
    const auto addFrame = [&](const Rect& rect) {
        overlay.polyline = {{rect.left, rect.top},
                            {rect.right, rect.top},
                            {rect.right, rect.bottom},
                            {rect.left, rect.bottom},
                            {rect.left, rect.top}};
    };
    if (shape && !shape->anyVisible()) {
        addFrame(shape->shape.rectangle);
    } else if (shape) {
        // Where only a line is to be seen its ends are what can be pulled; a badge alone gets a frame, and so does the
        // place of what is all hidden.
        if (shape->hasHandles()) {
            addHandles(shape->handleRect());
        } else if (!shape->line.isVisible()) {
            addFrame(shape->number.badge(*shape).inflated(2));
        }
        for (const TBBShape::FreeEnd& end : shape->freeLineEnds()) overlay.handles.push_back(end.at);
        if (showGuides_ && gestureUsed_) overlay.guides = shape->guides();
    }
    return overlay;
}

}  // namespace glimmer
