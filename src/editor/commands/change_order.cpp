#include "editor/commands/change_order.h"

#include "editor/commands/required.h"

namespace glimmer {

Status ChangeOrder::apply(CaptureContent& content) {
    requiredAnnotation(content, id_);
    const size_t former = content.annotations().indexOf(id_).value_or(0);
    content.moveInOrder(id_, index_);
    index_ = former;
    return {};
}

}  // namespace glimmer
