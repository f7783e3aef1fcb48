// Commands of menus, buttons and keys.

#include <algorithm>
#include <utility>

#include "common/assertion.h"
#include "editor/annotations/shapes_list.h"
#include "editor/canvas/canvas_controller.h"
#include "editor/commands/change_annotation.h"
#include "editor/commands/change_numbers.h"
#include "editor/commands/change_order.h"
#include "editor/commands/crop_picture.h"
#include "editor/commands/delete_annotation.h"
#include "editor/commands/draw_operation.h"
#include "imaging/pixel_operation.h"

namespace glimmer {

namespace {

/// Size of an annotation that was made with the keyboard, in picture pixels.
constexpr Size keyboardSize = {160, 90};
constexpr int32_t smallStep = 1;
constexpr int32_t largeStep = 10;

}  // namespace

bool CanvasController::canExecute(EditCommand command) const {
    const bool annotation = document_.selectedAnnotation() != nullptr;
    const bool area = !document_.selection().empty();
    switch (command) {
        case EditCommand::Fill:
        case EditCommand::Crop:
        case EditCommand::Annotate:
        case EditCommand::Blur:
        case EditCommand::Grayscale:
        case EditCommand::Invert:
        case EditCommand::Glow:
        case EditCommand::Interlace:
        case EditCommand::NewSelection:
            return area;
        case EditCommand::DeleteAnnotation:
        case EditCommand::BringToFront:
        case EditCommand::SendToBack:
        case EditCommand::EditText:
        case EditCommand::ToggleShape:
        case EditCommand::ToggleText:
        case EditCommand::ToggleLine:
        case EditCommand::ToggleNumber:
            return annotation;
        case EditCommand::Copy:
        case EditCommand::Cut:
            return annotation || area;
        case EditCommand::Renumber:
            return !document_.annotations().empty();
        case EditCommand::Undo:
            return document_.history().canUndo();
        case EditCommand::Redo:
            return document_.history().canRedo();
        case EditCommand::InvertSelection:
        case EditCommand::AddAnnotation:
        case EditCommand::Paste:
            return true;
    }
    return false;
}

bool CanvasController::execute(EditCommand command) {
    if (mode_ == CanvasMode::FreeDrawing) {
        // Within a drawing the last stroke is what is undone.
        if (command != EditCommand::Undo) return false;
        host_.inkChanged(ink_->undoStroke());
        storeInk();
        return true;
    }
    if (mode_ == CanvasMode::Capture || !canExecute(command)) return false;
    if (drag_ != Drag::None) finishDrag();
    if (command != EditCommand::EditText) host_.finishTextEdit();
    // Finishing an edit may have deleted an empty label.
    if (!canExecute(command)) return false;
    keyGesture_ = 0;
    const AnnotationId selected = document_.selectedId();
    bool done = true;
    switch (command) {
        case EditCommand::Fill:
        case EditCommand::Glow: {
            const Colour initial = command == EditCommand::Fill ? rgb(0, 0, 0) : rgb(255, 215, 0);
            host_.pickColour(initial, [this, command](Colour colour) {
                if (!document_.selection().empty()) pixelOperation(command, colour);
            });
            break;
        }
        case EditCommand::Blur:
        case EditCommand::Grayscale:
        case EditCommand::Invert:
        case EditCommand::Interlace:
            done = pixelOperation(command);
            break;
        case EditCommand::Crop:
            done = crop();
            break;
        case EditCommand::Annotate:
            done = annotate(document_.selection().bounds(document_.size()), NewKind::Rectangle);
            break;
        case EditCommand::NewSelection:
            document_.select({});
            if (tool_ != EditTool::Pointer) setTool(EditTool::Pointer);
            break;
        case EditCommand::InvertSelection: {
            const Rect all = document_.background().bounds();
            document_.selectAnnotation(noAnnotation);
            document_.select(Selection::freeForm(document_.selection().pixels(document_.size()).invertedWithin(all)));
            break;
        }
        case EditCommand::AddAnnotation: {
            const Rect area = document_.selection().bounds(document_.size());
            done = annotate(area.empty() ? keyboardArea() : area, NewKind::AsSet);
            break;
        }
        case EditCommand::Cut:
            // What the window has copied leaves a white area or no annotation behind.
            if (selected == noAnnotation) {
                done = pixelOperation(EditCommand::Fill, rgb(255, 255, 255));
                break;
            }
            [[fallthrough]];
        case EditCommand::DeleteAnnotation:
            done = run(std::make_unique<DeleteAnnotation>(selected));
            break;
        case EditCommand::Renumber:
            done = renumber();
            break;
        case EditCommand::BringToFront:
        case EditCommand::SendToBack: {
            const size_t last = document_.annotations().size() - 1;
            const size_t place = command == EditCommand::BringToFront ? last : 0;
            if (document_.annotations().indexOf(selected) != place)
                done = run(std::make_unique<ChangeOrder>(selected, place));
            break;
        }
        case EditCommand::Undo:
        case EditCommand::Redo: {
            const Size before = document_.size();
            const Status stepped = command == EditCommand::Undo ? document_.undo() : document_.redo();
            if (!stepped) host_.failed(stepped.message());
            // The area stays for the next attempt, as long as it lies where it lay.
            if (document_.size() != before) document_.select({});
            break;
        }
        case EditCommand::ToggleShape:
            toggle(Part::Shape);
            break;
        case EditCommand::ToggleText:
            toggle(Part::Text);
            break;
        case EditCommand::ToggleLine:
            toggle(Part::Line);
            break;
        case EditCommand::ToggleNumber:
            toggle(Part::Number);
            break;
        case EditCommand::EditText: {
            if (TBBShape shape = *document_.selectedAnnotation(); !shape.text.isVisible()) {
                shape.text.setVisible(true);
                fitLabel(shape, host_.textPainter());
                change(std::move(shape));
            }
            host_.beginTextEdit(selected);
            break;
        }
        case EditCommand::Copy:
        case EditCommand::Paste:
            done = false;
    }
    host_.stateChanged();
    host_.overlayChanged();
    return done;
}

bool CanvasController::pixelOperation(EditCommand command, Colour colour) {
    const Selection& selection = document_.selection();
    GLIMMER_ASSERT(!selection.empty(), "pSelection != NULL", "uEditor");
    std::optional<Region> region;
    PixelSelection framed;
    if (selection.kind == Selection::Kind::Rectangle || selection.kind == Selection::Kind::Ellipse) {
        // The operations count the right and bottom pixels as inside.
        framed.rectangle = {selection.rect.left, selection.rect.top, selection.rect.right - 1,
                            selection.rect.bottom - 1};
        if (selection.kind == Selection::Kind::Ellipse) framed.outline = PixelSelection::Outline::ellipse;
    } else {
        region = selection.pixels(document_.size());
    }
    const TBitmap& image = document_.background();
    const Region* free = region ? &*region : nullptr;
    const auto effect = [&](PixelOperationKind kind) {
        return applyEffect(static_cast<int32_t>(kind), image, free, &framed, blurIntensity);
    };
    Result<TPixelOperation> operation = Failure{};
    switch (command) {
        case EditCommand::Fill:
            operation = makeFill(image, free, &framed, colour);
            break;
        case EditCommand::Glow:
            operation = makeGlow(image, free, &framed, colour);
            break;
        case EditCommand::Blur:
            operation = effect(PixelOperationKind::blur);
            break;
        case EditCommand::Grayscale:
            operation = effect(PixelOperationKind::grayscale);
            break;
        case EditCommand::Invert:
            operation = effect(PixelOperationKind::invert);
            break;
        case EditCommand::Interlace:
            operation = effect(PixelOperationKind::interlace);
            break;
        default:
            GLIMMER_ASSERT(false, "1 == 2", "uEditor");
    }
    if (!operation) {
        host_.failed(operation.message());
        return false;
    }
    return run(std::make_unique<DrawOperation>(operation.take()));
}

bool CanvasController::crop() {
    const Rect area = document_.selection().bounds(document_.size());
    if (area.empty()) return false;
    if (!run(std::make_unique<CropPicture>(area))) return false;
    document_.select({});
    return true;
}

bool CanvasController::annotate(const Rect& area, NewKind newKind) {
    if (area.empty()) return false;
    const EditTool tool = std::exchange(tool_, EditTool::TextShapeRectangle);
    TBBShape shape = newShape(area);
    tool_ = tool;
    if (newKind == NewKind::Rectangle) {
        ShapeKind& kind = shape.shape.settings.kind;
        if (kind != ShapeKind::FilledRectangle) kind = ShapeKind::Rectangle;
    }
    if (newKind == NewKind::Rectangle || !shape.anyVisible()) shape.shape.setVisible(true);
    document_.select({});
    gesture_ = document_.newGesture();
    if (!addShape(std::move(shape), gesture_)) return false;
    const TBBShape* added = document_.selectedAnnotation();
    host_.reveal(added->bounds());
    if (added->text.isVisible()) host_.beginTextEdit(added->id());
    return true;
}

void CanvasController::toggle(Part part) { showPart(part, !document_.selectedAnnotation()->part(part).isVisible()); }

bool CanvasController::renumber() {
    TShapesList renumbered = document_.annotations();
    renumbered.renumber();
    std::vector<std::pair<AnnotationId, int32_t>> numbers;
    for (const TBBShape& shape : renumbered) numbers.emplace_back(shape.id(), shape.number.number);
    return setNumbers(numbers);
}

bool CanvasController::setNumbers(const std::vector<std::pair<AnnotationId, int32_t>>& numbers) {
    ChangeNumbers::Numbers changed;
    for (const auto& [id, number] : numbers) {
        const TBBShape* shape = document_.annotations().find(id);
        if (shape != nullptr && shape->number.number != number) changed.emplace_back(id, clampStepNumber(number));
    }
    if (changed.empty()) return false;
    return run(std::make_unique<ChangeNumbers>(std::move(changed)));
}

// --- keys

bool CanvasController::key(Key key, Modifiers held) {
    const bool areaKey = key == letter('A') && held == Modifiers{true, true, false};
    if (mode_ == CanvasMode::Capture) {
        if (key == Key::Escape || key == Key::Enter) {
            endCapture(key == Key::Enter);
            return true;
        }
        return areaKey ? selectByKey() : moveByKey(key, held);
    }
    if (key == Key::Escape) return escape();
    if (mode_ == CanvasMode::FreeDrawing) {
        if (key == Key::Enter) {
            endDrawing();
            return true;
        }
        return key == letter('Z') && held.ctrl && execute(EditCommand::Undo);
    }
    if (areaKey) return selectByKey();
    if (key == Key::Enter && !polygon_.empty()) {
        finishPolygon();
        return true;
    }
    struct Shortcut {
        Key key;
        Modifiers held;
        EditCommand command;
    };
    constexpr Modifiers none{};
    constexpr Modifiers ctrl{false, true, false};
    constexpr Modifiers alt{false, false, true};
    constexpr Modifiers ctrlAlt{false, true, true};
    static constexpr Shortcut shortcuts[] = {
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
    for (const Shortcut& shortcut : shortcuts)
        if (shortcut.key == key && shortcut.held == held) return execute(shortcut.command);
    if (key == Key::Delete && held == none)
        return execute(document_.selectedAnnotation() != nullptr ? EditCommand::DeleteAnnotation
                                                                 : EditCommand::NewSelection);
    if (key == Key::Tab && !held.ctrl && !held.alt) return walk(held.shift);
    return moveByKey(key, held);
}

/// What the keyboard makes an area or an annotation of: the middle of what is seen.
Rect CanvasController::keyboardArea() const {
    const Rect seen = view_.visible();
    const Point at{middle(seen.left, seen.right) - keyboardSize.width / 2,
                   middle(seen.top, seen.bottom) - keyboardSize.height / 2};
    return {at.x, at.y, at.x + keyboardSize.width, at.y + keyboardSize.height};
}

bool CanvasController::selectByKey() {
    host_.finishTextEdit();
    document_.selectAnnotation(noAnnotation);
    document_.select(Selection::rectangle(keyboardArea().intersected(document_.background().bounds())));
    host_.overlayChanged();
    host_.stateChanged();
    return true;
}

bool CanvasController::moveByKey(Key key, Modifiers held) {
    Point way;
    switch (key) {
        case Key::Left:
            way.x = -1;
            break;
        case Key::Right:
            way.x = 1;
            break;
        case Key::Up:
            way.y = -1;
            break;
        case Key::Down:
            way.y = 1;
            break;
        default:
            return false;
    }
    if (drag_ != Drag::None) return true;
    const int32_t step = held.shift ? largeStep : smallStep;
    way = {way.x * step, way.y * step};
    const TBBShape* selected = document_.selectedAnnotation();
    if (selected == nullptr || mode_ == CanvasMode::Capture) {
        Selection area = document_.selection();
        if (area.kind != Selection::Kind::Rectangle && area.kind != Selection::Kind::Ellipse) return false;
        const Rect all = document_.background().bounds();
        Rect moved = area.rect.moved(way.x, way.y);
        if (held.ctrl) moved = {area.rect.left, area.rect.top, area.rect.right + way.x, area.rect.bottom + way.y};
        if (moved.empty() || moved.intersected(all) != moved) return true;
        area.rect = moved;
        document_.select(std::move(area));
        host_.overlayChanged();
        host_.stateChanged();
        return true;
    }
    if (held.ctrl && held.alt) return false;
    TBBShape shape = *selected;
    if (keyGesture_ == 0 || keyMoved_ != shape.id()) keyGesture_ = document_.newGesture();
    keyMoved_ = shape.id();
    if (held.ctrl) {
        const Rect rect = shape.shape.rectangle;
        const Rect resized{rect.left, rect.top, std::max(rect.left + 1, rect.right + way.x),
                           std::max(rect.top + 1, rect.bottom + way.y)};
        shape.setShapeRect(resized);
    } else if (held.alt) {
        // The label alone, and free, since it would snap back at once.
        shape.text.settings.position = freeTextPosition;
        shape.text.rectangle = shape.text.rectangle.moved(way.x, way.y);
        shape.layOut();
    } else {
        shape.moveBy(way.x, way.y);
    }
    const bool moved = change(std::move(shape), keyGesture_);
    if (const TBBShape* now = document_.selectedAnnotation()) host_.reveal(now->handleRect());
    host_.overlayChanged();
    return moved;
}

/// One thing at a time: the drag, the polygon, the drawing, the selection, the tool.
bool CanvasController::escape() {
    if (drag_ != Drag::None && drag_ != Drag::Idle) {
        cancelDrag();
    } else if (mode_ == CanvasMode::FreeDrawing) {
        endDrawing();
    } else if (!polygon_.empty()) {
        polygon_.clear();
    } else if (document_.selectedAnnotation() != nullptr) {
        document_.selectAnnotation(noAnnotation);
    } else if (!document_.selection().empty()) {
        document_.select({});
    } else if (tool_ != EditTool::Pointer) {
        tool_ = EditTool::Pointer;
    } else {
        return false;
    }
    host_.overlayChanged();
    host_.stateChanged();
    return true;
}

bool CanvasController::walk(bool back) {
    const TShapesList& shapes = document_.annotations();
    if (shapes.empty()) return false;
    const std::optional<size_t> at = shapes.indexOf(document_.selectedId());
    const size_t count = shapes.size();
    const size_t next = !at ? (back ? count - 1 : 0) : (*at + (back ? count - 1 : 1)) % count;
    host_.finishTextEdit();
    document_.select({});
    document_.selectAnnotation(shapes[next].id());
    keyGesture_ = 0;
    host_.reveal(shapes[next].bounds());
    host_.overlayChanged();
    host_.stateChanged();
    return true;
}

}  // namespace glimmer
