#include "editor/commands/delete_annotation.h"

#include "editor/commands/required.h"

namespace glimmer {

Status DeleteAnnotation::apply(CaptureContent& content) {
    shape_ = requiredAnnotation(content, id_);
    index_ = content.annotations().indexOf(id_).value_or(0);
    content.removeAnnotation(id_);
    return {};
}

Status DeleteAnnotation::revert(CaptureContent& content) {
    content.insertAnnotation(index_, shape_);
    return {};
}

}  // namespace glimmer
