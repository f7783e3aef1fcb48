#include "editor/commands/add_annotation.h"

#include "editor/commands/change_annotation.h"
#include "editor/commands/required.h"

namespace glimmer {

Status AddAnnotation::apply(CaptureContent& content) {
    shape_.setId(content.insertAnnotation(content.annotations().size(), shape_));
    return {};
}

// Taken as it stands, which may be after merged changes: a redo brings back the finished annotation.
Status AddAnnotation::revert(CaptureContent& content) {
    shape_ = requiredAnnotation(content, shape_.id());
    content.removeAnnotation(shape_.id());
    return {};
}

bool AddAnnotation::mergeWith(UndoCommand& next) {
    const auto* change = dynamic_cast<ChangeAnnotation*>(&next);
    return change != nullptr && change->id() == shape_.id();
}

}  // namespace glimmer
