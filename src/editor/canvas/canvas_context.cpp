#include "editor/canvas/canvas_context.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "common/assertion.h"
#include "editor/commands/add_annotation.h"
#include "editor/commands/change_annotation.h"
#include "editor/commands/delete_annotation.h"

namespace glimmer {

bool CanvasContext::run(std::unique_ptr<UndoCommand> command) const {
    Gesture alone;
    return run(std::move(command), alone);
}

bool CanvasContext::run(std::unique_ptr<UndoCommand> command, Gesture& gesture) const {
    const Status done = document.run(std::move(command), gesture);
    if (!done) host.failed(done.message());
    return done.ok();
}

bool CanvasContext::change(TBBShape shape) const {
    Gesture alone;
    return change(std::move(shape), alone);
}

bool CanvasContext::change(TBBShape shape, Gesture& gesture) const {
    const TBBShape* current = document.annotations().find(shape.id());
    GLIMMER_ASSERT(current != nullptr, "pShape != NULL", "uEditor");
    if (*current == shape) return true;
    return run(std::make_unique<ChangeAnnotation>(std::move(shape)), gesture);
}

bool CanvasContext::add(TBBShape shape, Gesture& gesture) const {
    if (!run(std::make_unique<AddAnnotation>(std::move(shape)), gesture)) return false;
    document.selectAnnotation(document.annotations()[document.annotations().size() - 1].id());
    return true;
}

bool CanvasContext::remove(AnnotationId id) const { return run(std::make_unique<DeleteAnnotation>(id)); }

void CanvasContext::undo() const {
    if (const Status undone = document.undo(); !undone) host.failed(undone.message());
}

Point CanvasContext::inside(Point at) const {
    const Size size = document.size();
    return {std::clamp(at.x, 0, size.width - 1), std::clamp(at.y, 0, size.height - 1)};
}

bool CanvasContext::touches(Point a, Point b) const {
    const int32_t reach = hitSize() / 2;
    return std::abs(a.x - b.x) <= reach && std::abs(a.y - b.y) <= reach;
}

}  // namespace glimmer
