#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "editor/canvas/area_drag.h"
#include "editor/canvas/canvas_context.h"
#include "editor/canvas/canvas_drag.h"
#include "editor/canvas/canvas_keys.h"
#include "editor/canvas/edit_tool.h"
#include "editor/canvas/ink_session.h"
#include "editor/canvas/key_moves.h"
#include "editor/canvas/label_session.h"
#include "editor/canvas/polygon_draft.h"
#include "editor/canvas/tool_settings.h"
#include "editor/canvas/view_painter.h"

namespace glimmer {

/// The behaviour of the canvas without its window: turns presses, moves and keys, in picture coordinates, into
/// selections and commands. It decides whose a press or a key is; what they then do is in the parts that it owns: a
/// drag (canvas_drag.h), the tools' settings, the label that is edited, the ink that is drawn, moves by key, and
/// commands on the capture (capture_commands.h).
class CanvasController {
public:
    CanvasController(CaptureDocument& document, CanvasView& view, CanvasHost& host);
    ~CanvasController();
    CanvasController(const CanvasController&) = delete;
    CanvasController& operator=(const CanvasController&) = delete;
    CanvasController(CanvasController&&) = delete;
    CanvasController& operator=(CanvasController&&) = delete;

    // Mouse. Points are picture pixels and may lie outside the picture.
    void press(Point at, Modifiers held);
    void doubleClick(Point at, Modifiers held);
    void move(Point at, Modifiers held);
    void release(Point at, Modifiers held);
    /// The topmost annotation there, or noAnnotation.
    [[nodiscard]] AnnotationId annotationAt(Point at) const;
    /// The right button: selects what lies there (for the menu), or ends free drawing. True when a menu is wanted.
    bool rightPress(Point at);
    /// The mouse was taken away in the middle of a drag: what was done so far stays.
    void captureLost();
    [[nodiscard]] bool dragging() const { return drag_ != nullptr; }
    [[nodiscard]] CanvasCursor cursorAt(Point at) const;

    /// A key; false when it means nothing here.
    bool key(Key key, Modifiers held);
    /// Runs a command; false when there is nothing for it to act on. Copy, Cut and Paste are the window's.
    bool execute(EditCommand command);
    [[nodiscard]] bool canExecute(EditCommand command) const;

    [[nodiscard]] EditTool tool() const { return tool_; }
    void setTool(EditTool tool);
    [[nodiscard]] CanvasMode mode() const { return mode_; }

    // Settings: what the panels show and the next annotation receives.
    [[nodiscard]] TShapeStyle shownSettings() const { return settings_.shown(); }
    [[nodiscard]] const TShapeStyle& toolSettings() const { return settings_.own(); }
    void setToolSettings(TShapeStyle settings);
    /// Changes one setting of the tools and of the selected annotation; with a gesture, as a part of that.
    void changeSettings(const std::function<void(TShapeStyle&)>& change);
    void changeSettings(const std::function<void(TShapeStyle&)>& change, Gesture& gesture);
    void showPart(Part part, bool shown);
    /// Makes a style the current one.
    void applyStyle(const TShapeStyle& style, bool withVisibility);
    /// The shape kind by tag; Drawing enters free drawing.
    void changeKind(ShapeKind kind);
    /// Intensity of the blur, from the options.
    int32_t blurIntensity = 25;

    // In-place editing: the window's control holds the text.
    void textEdited(AnnotationId id, const std::string& text);
    void endTextEdit(AnnotationId id);
    [[nodiscard]] AnnotationId editedId() const { return label_.id(); }

    // Annotations from elsewhere.
    /// Puts annotations (pasted, moved by `shift` from where they were) on top and selects the last.
    bool insertAnnotations(std::vector<TBBShape> shapes, Point shift);
    /// Puts annotations on top, all together with their middle at that point, and selects the last.
    bool dropAnnotations(std::vector<TBBShape> shapes, Point at);
    /// Puts a picture on the canvas as an annotation without text, in the middle of what is visible.
    bool insertPicture(TBitmap picture);
    /// New step numbers.
    bool setNumbers(const std::vector<std::pair<AnnotationId, int32_t>>& numbers);

    // Free drawing.
    /// Draws in an annotation, whose shape becomes a drawing with the first stroke, or in a new one (noAnnotation).
    void beginDrawing(AnnotationId id);
    /// Stores the drawing in the annotation and returns to annotation mode.
    void endDrawing();
    void clearDrawing();
    [[nodiscard]] const InkPen& pen() const { return ink_.pen; }
    void setPen(const InkPen& pen);
    [[nodiscard]] const InkLayer* ink() const { return ink_.layer(); }
    [[nodiscard]] AnnotationId inkedId() const { return ink_.id(); }

    // Capture mode.
    /// The user is asked for an area; `finished` gets it, or an empty rectangle when it is given up.
    void beginCapture(std::function<void(Rect)> finished);
    void endCapture(bool take);

    [[nodiscard]] CanvasOverlay overlay() const;
    void setDotsPerInch(int32_t dots) { context_.dotsPerInch = dots; }

private:
    /// What the window was last told of.
    struct Told {
        EditTool tool = EditTool::Pointer;
        CanvasMode mode = CanvasMode::Annotation;
        TShapeStyle settings;
        InkPen pen;
        uint32_t dragSteps = 0;
        size_t corners = 0;
        Point pointer;
        AnnotationId activeId = noAnnotation;
        Part activePart = Part::Shape;
    };
    template <class Action>
    auto telling(Action action);
    void tell();

    // canvas_mouse.cpp
    [[nodiscard]] bool startsArea() const;
    void pressed(Point at, Modifiers held);
    void pressEmpty(Point at, Modifiers held);
    bool pressLineEnd(Point at);
    bool pressHandle(Point at);
    bool pressBody(Point at);
    bool pressArea(Point at, Modifiers held);
    void dragAnnotation(TBBShape pressed, Point at);
    [[nodiscard]] std::optional<TBBShape> selectedShape() const;
    void polygonPress(Point at);
    void finishPolygon();
    void doublePressed(Point at, Modifiers held);
    bool rightPressed(Point at);
    void moved(Point at, Modifiers held);
    void endDrag();
    [[nodiscard]] std::optional<CanvasCursor> cursorOverSelectedAnnotation(Point at) const;
    [[nodiscard]] std::optional<CanvasCursor> cursorAtRest(Point at) const;

    // canvas_commands.cpp
    struct CommandRow;
    static const CommandRow& rowOf(EditCommand command);
    bool carryOut(EditCommand command);
    bool pickAndOperate(EditCommand command);
    bool operate(EditCommand command);
    bool cut();
    bool removeSelected();
    bool editText();
    enum class NewKind : uint8_t { AsSet, Rectangle };
    bool annotate(const Rect& area, NewKind kind);
    bool addAnnotation();
    bool toggle(Part part);
    bool dropArea();
    [[nodiscard]] Rect selectedArea() const;
    [[nodiscard]] Rect keyboardArea() const;

    // canvas_shortcuts.cpp
    bool keyInCapture(Key key, Modifiers held);
    bool keyInDrawing(Key key, Modifiers held);
    bool keyPressed(Key key, Modifiers held);
    bool moveByKey(Key key, Modifiers held);
    bool selectByKey();
    bool escape();
    bool walk(bool back);

    CanvasContext context_;
    EditTool tool_ = EditTool::Pointer;
    CanvasMode mode_ = CanvasMode::Annotation;
    ToolSettings settings_;
    LabelSession label_;
    InkSession ink_;
    KeyMoves keyMoves_;
    PolygonDraft polygon_;
    std::shared_ptr<CanvasDrag> drag_;  ///< shared, since it may end within one of its own calls
    uint32_t dragSteps_ = 0;
    Part activePart_ = Part::Shape;  ///< pressed last, of the annotation with activeId_: has the handles
    AnnotationId activeId_ = noAnnotation;
    std::function<void(Rect)> captured_;
    Told told_;
    int32_t inputs_ = 0;  ///< calls from outside on the stack
};

/// Every way in goes through here: what it changed of the controller's own the window is told once, at the end.
template <class Action>
auto CanvasController::telling(Action action) {
    struct Input {
        explicit Input(int32_t& inputs) : inputs_(inputs) { ++inputs_; }
        ~Input() { --inputs_; }
        Input(const Input&) = delete;
        Input& operator=(const Input&) = delete;
        Input(Input&&) = delete;
        Input& operator=(Input&&) = delete;
        int32_t& inputs_;
    };
    const auto act = [&] {
        const Input input(inputs_);
        return action();
    };
    if constexpr (std::is_void_v<decltype(action())>) {
        act();
        tell();
    } else {
        auto answer = act();
        tell();
        return answer;
    }
}

}  // namespace glimmer
