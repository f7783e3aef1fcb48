// Commands of menus, buttons and keys.

#include <algorithm>
#include <utility>

#include "common/assertion.h"
#include "editor/canvas/canvas_controller.h"
#include "editor/canvas/capture_commands.h"

namespace glimmer {

namespace {

/// Size of an annotation that was made with the keyboard, in picture pixels.
constexpr Size keyboardSize = {160, 90};

/// What there must be for a command to act on.
enum class Needs : uint8_t { Nothing, Area, Annotation, AnnotationOrArea, AnyAnnotation, Done, Undone };

bool given(Needs needs, const CaptureDocument& document) {
    const bool annotation = document.selectedAnnotation() != nullptr;
    const bool area = !document.selection().empty();
    switch (needs) {
        case Needs::Nothing:
            return true;
        case Needs::Area:
            return area;
        case Needs::Annotation:
            return annotation;
        case Needs::AnnotationOrArea:
            return annotation || area;
        case Needs::AnyAnnotation:
            return !document.annotations().empty();
        case Needs::Done:
            return document.history().canUndo();
        case Needs::Undone:
            return document.history().canRedo();
    }
    return false;
}

}  // namespace

struct CanvasController::CommandRow {
    EditCommand command;
    Needs needs;
    bool (*run)(CanvasController& canvas);  ///< whether it could be done
};

const CanvasController::CommandRow& CanvasController::rowOf(EditCommand command) {
    using C = CanvasController;
    using E = EditCommand;
    static constexpr CommandRow rows[] = {
        {E::Fill, Needs::Area, [](C& c) { return c.pickAndOperate(E::Fill); }},
        {E::Crop, Needs::Area, [](C& c) { return cropToSelection(c.context_); }},
        {E::Annotate, Needs::Area, [](C& c) { return c.annotate(c.selectedArea(), NewKind::Rectangle); }},
        {E::Blur, Needs::Area, [](C& c) { return c.operate(E::Blur); }},
        {E::Grayscale, Needs::Area, [](C& c) { return c.operate(E::Grayscale); }},
        {E::Invert, Needs::Area, [](C& c) { return c.operate(E::Invert); }},
        {E::Glow, Needs::Area, [](C& c) { return c.pickAndOperate(E::Glow); }},
        {E::Interlace, Needs::Area, [](C& c) { return c.operate(E::Interlace); }},
        {E::NewSelection, Needs::Area, [](C& c) { return c.dropArea(); }},
        {E::InvertSelection, Needs::Nothing, [](C& c) { return invertSelection(c.context_); }},
        {E::AddAnnotation, Needs::Nothing, [](C& c) { return c.addAnnotation(); }},
        {E::DeleteAnnotation, Needs::Annotation, [](C& c) { return c.removeSelected(); }},
        {E::Renumber, Needs::AnyAnnotation, [](C& c) { return renumber(c.context_); }},
        {E::Copy, Needs::AnnotationOrArea, [](C&) { return false; }},
        {E::Cut, Needs::AnnotationOrArea, [](C& c) { return c.cut(); }},
        {E::Paste, Needs::Nothing, [](C&) { return false; }},
        {E::BringToFront, Needs::Annotation, [](C& c) { return bringToEnd(c.context_, true); }},
        {E::SendToBack, Needs::Annotation, [](C& c) { return bringToEnd(c.context_, false); }},
        {E::Undo, Needs::Done, [](C& c) { return stepHistory(c.context_, false); }},
        {E::Redo, Needs::Undone, [](C& c) { return stepHistory(c.context_, true); }},
        {E::ToggleShape, Needs::Annotation, [](C& c) { return c.toggle(Part::Shape); }},
        {E::ToggleText, Needs::Annotation, [](C& c) { return c.toggle(Part::Text); }},
        {E::ToggleLine, Needs::Annotation, [](C& c) { return c.toggle(Part::Line); }},
        {E::ToggleNumber, Needs::Annotation, [](C& c) { return c.toggle(Part::Number); }},
        {E::EditText, Needs::Annotation, [](C& c) { return c.editText(); }},
    };
    const auto* row = std::find_if(std::begin(rows), std::end(rows),
                                   [command](const CommandRow& each) { return each.command == command; });
    GLIMMER_ASSERT(row != std::end(rows), "1 == 2", "uEditor");
    return *row;
}

bool CanvasController::canExecute(EditCommand command) const { return given(rowOf(command).needs, context_.document); }

bool CanvasController::execute(EditCommand command) {
    return telling([&] { return carryOut(command); });
}

bool CanvasController::carryOut(EditCommand command) {
    if (mode_ == CanvasMode::FreeDrawing) {
        // Within a drawing the last stroke is what is undone.
        if (command != EditCommand::Undo) return false;
        ink_.undoStroke();
        return true;
    }
    if (mode_ == CanvasMode::Capture || !canExecute(command)) return false;
    endDrag();
    if (command != EditCommand::EditText) context_.host.finishTextEdit();
    // Finishing an edit may have deleted an empty label.
    if (!canExecute(command)) return false;
    keyMoves_.end();
    return rowOf(command).run(*this);
}

bool CanvasController::operate(EditCommand command) { return operateOnPixels(context_, command, {}, blurIntensity); }

bool CanvasController::pickAndOperate(EditCommand command) {
    const Colour initial = command == EditCommand::Fill ? rgb(0, 0, 0) : rgb(255, 215, 0);
    context_.host.pickColour(initial, [this, command](Colour colour) {
        if (!context_.document.selection().empty()) operateOnPixels(context_, command, colour, blurIntensity);
    });
    return true;
}

bool CanvasController::dropArea() {
    context_.document.select({});
    if (tool_ != EditTool::Pointer) setTool(EditTool::Pointer);
    return true;
}

/// What the window has copied leaves a white area or no annotation behind.
bool CanvasController::cut() {
    if (context_.document.selectedAnnotation() != nullptr) return removeSelected();
    return operateOnPixels(context_, EditCommand::Fill, rgb(255, 255, 255), blurIntensity);
}

bool CanvasController::removeSelected() { return context_.remove(context_.document.selectedId()); }

bool CanvasController::toggle(Part part) {
    showPart(part, !context_.document.selectedAnnotation()->part(part).isVisible());
    return true;
}

bool CanvasController::editText() {
    TBBShape shape = *context_.document.selectedAnnotation();
    const AnnotationId id = shape.id();
    if (!shape.text.isVisible()) {
        shape.text.setVisible(true);
        fitLabel(shape, context_.host.textPainter());
        context_.change(std::move(shape));
    }
    label_.begin(id);
    return true;
}

Rect CanvasController::selectedArea() const { return context_.document.selection().bounds(context_.document.size()); }

/// What the keyboard makes an area or an annotation of: the middle of what is seen.
Rect CanvasController::keyboardArea() const {
    const Rect seen = context_.view.visible();
    const Point at{middle(seen.left, seen.right) - keyboardSize.width / 2,
                   middle(seen.top, seen.bottom) - keyboardSize.height / 2};
    return {at.x, at.y, at.x + keyboardSize.width, at.y + keyboardSize.height};
}

bool CanvasController::addAnnotation() {
    const Rect area = selectedArea();
    return annotate(area.empty() ? keyboardArea() : area, NewKind::AsSet);
}

bool CanvasController::annotate(const Rect& area, NewKind newKind) {
    if (area.empty()) return false;
    TBBShape shape = settings_.newAnnotation(area, EditTool::TextShapeRectangle);
    if (newKind == NewKind::Rectangle) {
        ShapeKind& kind = shape.shape.settings.kind;
        if (kind != ShapeKind::FilledRectangle) kind = ShapeKind::Rectangle;
    }
    if (newKind == NewKind::Rectangle || !shape.anyVisible()) shape.shape.setVisible(true);
    context_.document.select({});
    Gesture gesture = context_.document.beginGesture();
    if (!context_.add(std::move(shape), gesture)) return false;
    const TBBShape* added = context_.document.selectedAnnotation();
    context_.host.reveal(added->bounds());
    if (added->text.isVisible()) label_.begin(added->id(), gesture);
    return true;
}

}  // namespace glimmer
