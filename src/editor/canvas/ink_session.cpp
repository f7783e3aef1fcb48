#include "editor/canvas/ink_session.h"

#include <utility>

#include "common/assertion.h"

namespace glimmer {

bool InkSession::begin(AnnotationId id) {
    CaptureDocument& document = context_.document;
    auto layer = std::make_unique<InkLayer>(document.size());
    const TBBShape* shape = document.annotations().find(id);
    if (shape != nullptr && shape->shape.drawing != nullptr) {
        if (const Status loaded = layer->load(*shape->shape.drawing, shape->shape.rectangle); !loaded) {
            context_.host.failed(loaded.message());
            return false;
        }
    }
    document.select({});
    layer_ = std::move(layer);
    id_ = shape == nullptr ? noAnnotation : id;
    before_.reset();
    if (shape != nullptr) before_ = *shape;
    gesture_ = document.beginGesture();
    stored_ = false;
    document.selectAnnotation(id_);
    context_.host.inkChanged(context_.picture());
    return true;
}

void InkSession::strokeFrom(Point at) {
    context_.host.inkChanged(layer_->begin(at, pen.eraser, pen.colour, pen.width));
}

void InkSession::strokeTo(Point at) {
    if (underWay()) context_.host.inkChanged(layer_->moveTo(at));
}

void InkSession::endStroke() {
    if (!underWay()) return;
    layer_->end();
    store();
}

void InkSession::undoStroke() {
    if (!underWay()) return;
    context_.host.inkChanged(layer_->undoStroke());
    store();
}

void InkSession::clear() {
    if (!underWay()) return;
    context_.host.inkChanged(layer_->clear());
    store();
}

/// Brings the capture's annotation to what is drawn. An empty drawing takes its annotation away again, or leaves the
/// one it is drawn in as it was.
void InkSession::store() {
    if (!layer_->changed()) {
        takeBack();
        return;
    }
    Result<InkLayer::Finished> drawn = layer_->finished();
    if (!drawn)
        context_.host.failed(drawn.message());
    else if (drawn->picture.empty())
        takeBack();
    else
        storePicture(drawn.take());
}

void InkSession::storePicture(InkLayer::Finished drawn) {
    const TBBShape* existing = context_.document.annotations().find(id_);
    TBBShape shape = existing != nullptr ? *existing : settings_.newAnnotation(drawn.rect, EditTool::TextPen);
    shape.shape.settings.kind = ShapeKind::Drawing;
    shape.shape.settings.visible = true;
    shape.shape.drawing = std::make_shared<const TBitmap>(std::move(drawn.picture));
    shape.setShapeRect(drawn.rect);
    if (existing != nullptr) {
        const uint64_t before = context_.document.revision();
        context_.change(std::move(shape), gesture_);
        stored_ |= context_.document.revision() != before;
        return;
    }
    // The label comes with "Apply".
    shape.text.setVisible(false);
    shape.line.setVisible(false);
    stored_ = context_.add(std::move(shape), gesture_);
    if (stored_) id_ = context_.document.selectedId();
}

/// The annotation is again as it was before the drawing began. Something else, a new name for the capture, may have
/// been done since the last stroke; that stays.
void InkSession::takeBack() {
    if (!std::exchange(stored_, false)) return;
    if (context_.document.newestIs(gesture_))
        context_.undo();
    else if (before_)
        context_.change(*before_);
    else
        context_.remove(id_);
    if (!before_) id_ = noAnnotation;
}

void InkSession::end() {
    GLIMMER_ASSERT(layer_ != nullptr, "pPicture != NULL", "uEditor");
    layer_->end();
    store();
    const bool erased = layer_->changed() && layer_->blank();
    layer_.reset();
    context_.document.selectAnnotation(id_);
    if (context_.document.annotations().find(id_) != nullptr) {
        if (erased)
            settleErased();
        else if (!before_)
            complete();
    }
    id_ = noAnnotation;
    context_.host.inkChanged(context_.picture());
}

/// All ink of the drawing was cleared or erased: what else the annotation shows stays.
void InkSession::settleErased() {
    TBBShape shape = *context_.document.annotations().find(id_);
    if (shape.shape.settings.kind != ShapeKind::Drawing) return;
    shape.shape.setVisible(false);
    if (!shape.anyVisible()) {
        context_.remove(id_);
        return;
    }
    TShapeDescriptor erased = shape.describe();
    erased.style.shape.visible = true;
    erased.drawing.reset();
    clampDescriptor(erased);  // gives it an empty picture
    context_.change(TBBShape(erased));
}

/// A new drawing gets its label and line.
void InkSession::complete() {
    TBBShape shape = *context_.document.annotations().find(id_);
    const TShapeStyle& settings = settings_.own();
    shape.text.setVisible(settings.text.visible);
    shape.line.setVisible(settings.line.visible);
    context_.change(std::move(shape), gesture_);
    if (settings.text.visible) label_.begin(id_, gesture_);
}

}  // namespace glimmer
