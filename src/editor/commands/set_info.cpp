#include "editor/commands/set_info.h"

#include <utility>

namespace glimmer {

Status SetInfo::apply(CaptureContent& content) {
    CaptureInfo info = content.info();
    std::swap(field_ == Field::Name ? info.name : info.notes, other_);
    content.setInfo(std::move(info));
    return {};
}

// Both have been applied: this one keeps the text from before the first, which is what an undo needs.
bool SetInfo::mergeWith(UndoCommand& next) {
    const auto* other = dynamic_cast<SetInfo*>(&next);
    return other != nullptr && other->field_ == field_;
}

}  // namespace glimmer
