#include "editor/commands/change_annotation.h"

#include <utility>

#include "editor/commands/required.h"

namespace glimmer {

Status ChangeAnnotation::apply(CaptureContent& content) {
    TBBShape former = requiredAnnotation(content, other_.id());
    content.replaceAnnotation(std::exchange(other_, std::move(former)));
    return {};
}

// Both have been applied: this one keeps the annotation from before the first, which is what an undo needs.
bool ChangeAnnotation::mergeWith(UndoCommand& next) {
    const auto* other = dynamic_cast<ChangeAnnotation*>(&next);
    return other != nullptr && other->id() == id();
}

}  // namespace glimmer
