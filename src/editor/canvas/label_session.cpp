#include "editor/canvas/label_session.h"

#include <utility>

namespace glimmer {

void LabelSession::begin(AnnotationId id, const Gesture& making) {
    if (id_ != id) {
        context_.host.finishTextEdit();
        id_ = id;
        made_ = making.used();
        gesture_ = made_ ? making : context_.document.beginGesture();
    }
    context_.host.beginTextEdit(id);
}

void LabelSession::edited(AnnotationId id, const std::string& text) {
    const TBBShape* current = context_.document.annotations().find(id);
    if (current == nullptr || id != id_) return;
    TBBShape shape = *current;
    shape.text.text = text;
    fitChangedLabel(*current, shape, context_.host.textPainter());
    context_.change(std::move(shape), gesture_);
}

void LabelSession::end(AnnotationId id) {
    id_ = noAnnotation;
    Gesture gesture = std::exchange(gesture_, {});
    const TBBShape* current = context_.document.annotations().find(id);
    if (current != nullptr && current->text.text.empty() && current->text.isVisible()) {
        TBBShape shape = *current;
        shape.text.setVisible(false);
        shape.line.setVisible(shape.line.isVisible() && !shape.shape.isVisible());
        if (shape.anyVisible())
            context_.change(std::move(shape), gesture);
        else if (made_ && context_.document.newestIs(gesture))
            context_.undo();  // as if it had never been made
        else
            context_.remove(id);
    }
    context_.document.endGesture();
}

}  // namespace glimmer
