#include "editor/commands/change_numbers.h"

#include "editor/commands/required.h"

namespace glimmer {

Status ChangeNumbers::apply(CaptureContent& content) {
    for (auto& [id, number] : other_) {
        TBBShape shape = requiredAnnotation(content, id);
        std::swap(shape.number.number, number);
        content.replaceAnnotation(std::move(shape));
    }
    return {};
}

}  // namespace glimmer
