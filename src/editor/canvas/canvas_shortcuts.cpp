// The keys of the canvas: what each means in each mode.

#include <utility>

#include "editor/canvas/canvas_controller.h"

namespace glimmer {

namespace {

constexpr Modifiers none{};
constexpr Modifiers ctrl{false, true, false};
constexpr Modifiers alt{false, false, true};
constexpr Modifiers ctrlAlt{false, true, true};

struct Shortcut {
    Key key;
    Modifiers held;
    EditCommand command;
};

constexpr Shortcut shortcuts[] = {
    {letter('A'), ctrl, EditCommand::Annotate},
    {letter('R'), ctrl, EditCommand::Crop},
    {letter('F'), ctrl, EditCommand::Fill},
    {letter('B'), ctrl, EditCommand::Blur},
    {letter('G'), ctrl, EditCommand::Grayscale},
    {letter('N'), ctrl, EditCommand::Invert},
    {letter('L'), ctrl, EditCommand::Glow},
    {letter('T'), ctrl, EditCommand::Interlace},
    {letter('I'), ctrl, EditCommand::InvertSelection},
    {letter('Z'), ctrl, EditCommand::Undo},
    {letter('Y'), ctrl, EditCommand::Redo},
    {Key::Backspace, alt, EditCommand::Renumber},
    {Key::Insert, none, EditCommand::AddAnnotation},
    {letter('1'), none, EditCommand::ToggleShape},
    {letter('2'), none, EditCommand::ToggleText},
    {letter('3'), none, EditCommand::ToggleLine},
    {letter('4'), none, EditCommand::ToggleNumber},
    {Key::Up, ctrlAlt, EditCommand::BringToFront},
    {Key::Down, ctrlAlt, EditCommand::SendToBack},
    {Key::Enter, none, EditCommand::EditText},
};

bool selectsArea(Key key, Modifiers held) { return key == letter('A') && held == Modifiers{true, true, false}; }

}  // namespace

bool CanvasController::key(Key key, Modifiers held) {
    return telling([&] {
        if (mode_ == CanvasMode::Capture) return keyInCapture(key, held);
        if (key == Key::Escape) return escape();
        if (mode_ == CanvasMode::FreeDrawing) return keyInDrawing(key, held);
        return keyPressed(key, held);
    });
}

bool CanvasController::keyInCapture(Key key, Modifiers held) {
    if (key == Key::Escape || key == Key::Enter) {
        endCapture(key == Key::Enter);
        return true;
    }
    return selectsArea(key, held) ? selectByKey() : moveByKey(key, held);
}

bool CanvasController::keyInDrawing(Key key, Modifiers held) {
    if (key == Key::Enter) {
        endDrawing();
        return true;
    }
    return key == letter('Z') && held.ctrl && carryOut(EditCommand::Undo);
}

bool CanvasController::keyPressed(Key key, Modifiers held) {
    if (selectsArea(key, held)) return selectByKey();
    if (key == Key::Enter && polygon_.underWay()) {
        finishPolygon();
        return true;
    }
    for (const Shortcut& shortcut : shortcuts)
        if (shortcut.key == key && shortcut.held == held) return carryOut(shortcut.command);
    if (key == Key::Delete && held == none) {
        const bool annotation = context_.document.selectedAnnotation() != nullptr;
        return carryOut(annotation ? EditCommand::DeleteAnnotation : EditCommand::NewSelection);
    }
    if (key == Key::Tab && !held.ctrl && !held.alt) return walk(held.shift);
    return moveByKey(key, held);
}

bool CanvasController::moveByKey(Key key, Modifiers held) {
    const std::optional<Point> way = KeyMoves::way(key, held);
    if (!way) return false;
    if (drag_ != nullptr) return true;
    if (mode_ == CanvasMode::Capture || context_.document.selectedAnnotation() == nullptr)
        return keyMoves_.area(*way, held);
    return keyMoves_.annotation(*way, held);
}

bool CanvasController::selectByKey() {
    context_.host.finishTextEdit();
    context_.document.selectAnnotation(noAnnotation);
    context_.document.select(Selection::rectangle(keyboardArea().intersected(context_.picture())));
    return true;
}

/// One thing at a time: the drag, the polygon, the drawing, the selection, the tool.
bool CanvasController::escape() {
    if (drag_ != nullptr && !drag_->idle()) {
        const std::shared_ptr<CanvasDrag> ended = std::exchange(drag_, nullptr);
        ++dragSteps_;
        ended->cancel();
    } else if (mode_ == CanvasMode::FreeDrawing) {
        endDrawing();
    } else if (polygon_.underWay()) {
        polygon_.clear();
    } else if (context_.document.selectedAnnotation() != nullptr) {
        context_.document.selectAnnotation(noAnnotation);
    } else if (!context_.document.selection().empty()) {
        context_.document.select({});
    } else if (tool_ != EditTool::Pointer) {
        tool_ = EditTool::Pointer;
    } else {
        return false;
    }
    return true;
}

/// To the next annotation, or the one before.
bool CanvasController::walk(bool back) {
    const TShapesList& shapes = context_.document.annotations();
    if (shapes.empty()) return false;
    const std::optional<size_t> at = shapes.indexOf(context_.document.selectedId());
    const size_t count = shapes.size();
    const size_t next = !at ? (back ? count - 1 : 0) : (*at + (back ? count - 1 : 1)) % count;
    const AnnotationId id = shapes[next].id();
    context_.host.finishTextEdit();  // may remove the annotation that was edited
    context_.document.select({});
    context_.document.selectAnnotation(id);
    keyMoves_.end();
    if (const TBBShape* shape = context_.document.selectedAnnotation()) context_.host.reveal(shape->bounds());
    return true;
}

}  // namespace glimmer
