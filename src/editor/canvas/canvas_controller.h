#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "editor/canvas/canvas_keys.h"
#include "editor/canvas/canvas_view.h"
#include "editor/canvas/edit_tool.h"
#include "editor/canvas/ink_layer.h"
#include "editor/canvas/view_painter.h"
#include "editor/document/document.h"
#include "editor/painting/text_painter.h"

namespace glimmer {

enum class CanvasMode : uint8_t { Annotation, FreeDrawing, Capture };
enum class CanvasCursor : uint8_t {
    Arrow,
    Cross,
    Move,
    NorthWestSouthEast,
    NorthEastSouthWest,
    Vertical,
    Horizontal,
    Pen,
    Eraser,
};

/// What the controller asks of the window that shows the canvas.
class CanvasHost {
public:
    virtual ~CanvasHost() = default;
    virtual TextPainter& textPainter() = 0;
    /// The overlay (selection, handles, guides) may look different now.
    virtual void overlayChanged() = 0;
    /// The label of this annotation is to be edited in place; endTextEdit() answers.
    virtual void beginTextEdit(AnnotationId id) = 0;
    /// The edit that is under way, if any, ends now; its text is kept.
    virtual void finishTextEdit() = 0;
    /// Ink inside `area` looks different.
    virtual void inkChanged(const Rect& area) = 0;
    /// Tool, mode, settings or what is selected changed: buttons and panels are to follow.
    virtual void stateChanged() = 0;
    /// Shows `area` of the picture, scrolling when needed.
    virtual void reveal(const Rect& area) = 0;
    /// Lets the user pick a colour; the answer may come at any later time, or never.
    virtual void pickColour(Colour initial, std::function<void(Colour)> picked) = 0;
    /// An operation could not be done; the sentence is for the user.
    virtual void failed(const std::string& message) = 0;
};

/// The behaviour of the canvas without its window: turns presses, moves and keys, in picture coordinates, into
/// selections and commands. One drag is one step of the history.
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
    [[nodiscard]] bool dragging() const { return drag_ != Drag::None; }
    [[nodiscard]] CanvasCursor cursorAt(Point at) const;

    /// A key; false when it means nothing here. `repeated` keys of one kind merge into one step.
    bool key(Key key, Modifiers held);
    /// Runs a command; false when there is nothing for it to act on. Copy, Cut and Paste are the window's.
    bool execute(EditCommand command);
    [[nodiscard]] bool canExecute(EditCommand command) const;

    [[nodiscard]] EditTool tool() const { return tool_; }
    void setTool(EditTool tool);
    [[nodiscard]] CanvasMode mode() const { return mode_; }

    // Settings: what the panels show and the next annotation receives.
    /// The selected annotation's settings, or else those of the tools.
    [[nodiscard]] TShapeStyle shownSettings() const;
    [[nodiscard]] const TShapeStyle& toolSettings() const { return settings_; }
    void setToolSettings(TShapeStyle settings) { settings_ = std::move(settings); }
    /// Changes one setting of the tools and of the selected annotation. Changes with the same gesture merge.
    void changeSettings(const std::function<void(TShapeStyle&)>& change, Gesture gesture = 0);
    /// Shows or hides a part: a setting like others.
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
    [[nodiscard]] AnnotationId editedId() const { return edited_; }

    // Annotations from elsewhere.
    /// Puts annotations (pasted, moved by (dx, dy) from where they were) on top and selects the last.
    bool insertAnnotations(std::vector<TBBShape> shapes, Point shift);
    /// Puts annotations on top, all together with their middle at that point, and selects the last.
    bool dropAnnotations(std::vector<TBBShape> shapes, Point at);
    /// Puts a picture on the canvas as an annotation without text, in the middle of what is visible.
    bool insertPicture(TBitmap picture);
    /// New step numbers, and the painting order if `order` is not empty (all ids, bottom first).
    bool setNumbers(const std::vector<std::pair<AnnotationId, int32_t>>& numbers);

    // Free drawing.
    /// Draws in an annotation, whose shape becomes a drawing with the first stroke, or in a new one (noAnnotation).
    void beginDrawing(AnnotationId id);
    /// Stores the drawing in the annotation and returns to annotation mode.
    void endDrawing();
    void clearDrawing();
    bool eraser = false;
    Colour inkColour = rgb(255, 255, 0);
    int32_t inkWidth = initialPenWidth;
    [[nodiscard]] const InkLayer* ink() const { return ink_.get(); }
    /// The annotation whose ink is being edited and whose shape is therefore not painted, or noAnnotation.
    [[nodiscard]] AnnotationId inkedId() const { return inkedId_; }

    // Capture mode.
    /// The user is asked for an area; `finished` gets it, or an empty rectangle when it is given up.
    void beginCapture(std::function<void(Rect)> finished);
    void endCapture(bool take);

    [[nodiscard]] CanvasOverlay overlay() const;
    int32_t dotsPerInch = 96;

private:
    enum class Drag : uint8_t { None, Area, MoveArea, ResizeArea, Annotation, LineEnd, NewShape, NewLine, Ink, Idle };

    bool run(std::unique_ptr<UndoCommand> command, Gesture gesture = 0);
    bool change(TBBShape shape, Gesture gesture = 0);
    [[nodiscard]] Point inside(Point at) const;
    [[nodiscard]] int32_t hitSize() const;
    [[nodiscard]] HitReach reach() const;
    [[nodiscard]] bool startsArea() const;

    bool pressAnnotation(Point at, bool onlySelected);
    [[nodiscard]] std::optional<TBBShape> selectedShape() const;
    bool pressLineEnd(Point at);
    bool pressSelection(Point at, Modifiers held);
    void beginArea(Point at, Modifiers held);
    void dragArea(Point at, Modifiers held);
    void polygonPress(Point at);
    void finishPolygon();
    void beginShape(Point at);
    void dragShape(Point at, Modifiers held);
    void finishShape();
    void finishDrag();
    void cancelDrag();
    [[nodiscard]] TBBShape newShape(const Rect& rect) const;
    bool addShape(TBBShape shape, Gesture gesture);
    void storeInk();
    void takeBackInk();
    void dropEmptyLabel();
    void takeFreeNumber(TBBShape& shape) const;
    void settleErased(AnnotationId id);
    void fitChanged(const TBBShape& before, TBBShape& after);

    bool pixelOperation(EditCommand command, Colour colour = 0);
    bool crop();
    enum class NewKind : uint8_t { AsSet, Rectangle };
    bool annotate(const Rect& area, NewKind kind);
    void toggle(Part part);
    bool renumber();
    bool moveByKey(Key key, Modifiers held);
    bool selectByKey();
    [[nodiscard]] Rect keyboardArea() const;
    bool escape();
    bool walk(bool back);

    CaptureDocument& document_;
    CanvasView& view_;
    CanvasHost& host_;
    EditTool tool_ = EditTool::Pointer;
    CanvasMode mode_ = CanvasMode::Annotation;
    TShapeStyle settings_;

    Drag drag_ = Drag::None;
    Point pressedAt_;
    Point lastAt_;
    Gesture gesture_ = 0;
    bool gestureUsed_ = false;
    Selection formerSelection_;
    bool adding_ = false;  ///< the area joins formerSelection_
    int32_t areaHandle_ = noHandle;
    std::optional<TBBShape> dragged_;  ///< the annotation as the drag under way has it
    Part activePart_ = Part::Shape;    ///< pressed last, of the annotation with activeId_: has the handles
    AnnotationId activeId_ = noAnnotation;
    bool frontEnd_ = false;  ///< which end of the line is dragged
    std::vector<Point> polygon_;
    Point hover_;
    bool showGuides_ = false;

    Gesture keyGesture_ = 0;  ///< moves by arrow keys in a row
    AnnotationId keyMoved_ = noAnnotation;

    AnnotationId edited_ = noAnnotation;
    Gesture editGesture_ = 0;

    std::unique_ptr<InkLayer> ink_;
    AnnotationId inkedId_ = noAnnotation;
    Gesture inkGesture_ = 0;             ///< all that is drawn before "Apply" is one step
    bool inkStored_ = false;             ///< the capture has ink of this drawing
    std::optional<TBBShape> beforeInk_;  ///< the annotation that is drawn in, as it was
    std::function<void(Rect)> captured_;
};

/// The block of the page at a point: the smallest rectangle around it that is framed by lines of one colour.
Rect blockAt(const TBitmap& picture, Point at);

}  // namespace glimmer
