#pragma once

#include <wx/panel.h>
#include <wx/timer.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "editor/annotations/new_annotation_options.h"
#include "editor/canvas/canvas_place.h"
#include "editor/canvas/canvas_view.h"
#include "editor/canvas/wheel_turns.h"
#include "editor/window/canvas_window.h"
#include "editor/window/editing_form.h"

class wxMenu;

namespace glimmer {

class CanvasPainting;
class FloatingPanels;
class LabelEditor;
class OptionsListener;
class PropertyPanels;
class SelectionToolbar;

/// The editing canvas of one capture at a time: shows it with its annotations and lets the user select, annotate, draw
/// and change pixels. Thin: what a press or a key means is the controller's (canvas_controller.h), what is on the
/// screen is painted by the core. Hosted without a border by the main editor window, which owns the captures.
///
/// The sources: uEditor.cpp (making, showing), uEditor_state.cpp (what changed), uEditor_view.cpp, uEditor_mouse.cpp,
/// uEditor_keys.cpp, uEditor_commands.cpp, uEditor_panels.cpp. Its parts know it as EditingForm.
class TEditForm : public wxPanel, public EditingForm, private CanvasHost {
public:
    TEditForm(wxWindow* parent, CaptureDocument& document);
    ~TEditForm() override;

    /// Shows another capture from now on, at that place. Costs a tenth of making a canvas. Throws std::bad_alloc, with
    /// nothing changed, when there is no room for the capture's picture.
    void show(CaptureDocument& document, const CanvasPlace& place = {});
    /// Where the user is on the capture that is shown.
    [[nodiscard]] CanvasPlace place() const { return {view_.zoom(), view_.scroll(), controller_->tool()}; }
    /// Whether code of the canvas waits on the stack for a message, a dialog, a menu or the end of a drag to another
    /// window: the canvas must outlive that.
    [[nodiscard]] bool waits() const { return waiting_ > 0; }
    /// Whether the user is in the middle of something that has to end on this capture: that, a drag, or a picker.
    [[nodiscard]] bool busy() const;

    // For the main window's toolbar and status bar.
    [[nodiscard]] EditTool tool() const { return controller_->tool(); }
    void setTool(EditTool tool);
    void undo() { executeCommand(EditCommand::Undo); }
    void redo() { executeCommand(EditCommand::Redo); }
    void zoomIn();
    void zoomOut();
    void zoomTo(int32_t percent);
    /// Brings the zoom, once, to where the picture's width, or all of it, is seen; the page's top stays in view.
    void zoomToFit(CanvasView::Fit fit);
    /// "Add Image": puts the picture on the canvas as an annotation.
    bool insertPicture(TBitmap picture) { return controller_->insertPicture(std::move(picture)); }
    /// Picture pixel under the pointer, if it is over the picture.
    [[nodiscard]] std::optional<Point> pointerPosition() const;
    /// Called, when there is time, after the tool, the zoom, the selection or what can be undone has changed.
    void onChanged(std::function<void()> changed) { changed_ = std::move(changed); }
    /// The same when nothing but the pointer's place has changed.
    void onPointerMoved(std::function<void()> moved) { pointerMoved_ = std::move(moved); }
    /// Paints what has become invalid without waiting for the queue.
    void paintNow() { pbScreen_->Update(); }
    /// The focus for the canvas or, coming from behind, for the property panels.
    void takeFocus(bool fromBehind);
    /// Capture mode: the user picks an area; `finished` gets it, or an empty one when it was cancelled.
    void beginCapture(std::function<void(Rect)> finished) { controller_->beginCapture(std::move(finished)); }
    /// A key press; true when it was taken. The form previews all keys of its children.
    bool FormKeyDown(wxKeyEvent& event);
    /// The popup menu of annotations (`pmShapeMenu`).
    [[nodiscard]] std::unique_ptr<wxMenu> makeShapeMenu();

    // EditingForm
    [[nodiscard]] CaptureDocument& document() override { return *document_; }
    [[nodiscard]] CanvasController& controller() override { return *controller_; }
    [[nodiscard]] int32_t zoom() const override { return view_.zoom(); }
    [[nodiscard]] Rect inView(const Rect& picture) const override { return view_.toView(picture); }
    [[nodiscard]] Rect selectedArea() const override { return document_->selection().bounds(document_->size()); }
    bool executeCommand(EditCommand command) override;
    [[nodiscard]] bool canExecute(EditCommand command) const override;
    void finishEditing() override;
    void mnuNumberSetClick() override;
    wxWindow& window() override { return *this; }
    void pickColourAt(wxWindow& owner, Colour initial, std::function<void(Colour)> picked) override;
    [[nodiscard]] std::function<bool()> stillShown() override;

    bool AcceptsFocus() const override { return false; }

private:
    // CanvasHost
    TextPainter& textPainter() override;
    void controllerChanged(const ControllerChange& change) override;
    void beginTextEdit(AnnotationId id) override;
    void finishTextEdit() override;
    void inkChanged(const Rect& area) override;
    void reveal(const Rect& area) override;
    void pickColour(Colour initial, std::function<void(Colour)> picked) override;
    void failed(const std::string& message) override;

    /// Stands around a call that comes back when the user has done something.
    class Waiting {
    public:
        explicit Waiting(TEditForm& form) : form_(form) { ++form_.waiting_; }
        ~Waiting() { --form_.waiting_; }
        Waiting(const Waiting&) = delete;
        Waiting& operator=(const Waiting&) = delete;
        Waiting(Waiting&&) = delete;
        Waiting& operator=(Waiting&&) = delete;

    private:
        TEditForm& form_;
    };

    // Making and showing
    void makeCanvas();
    void bindCanvas();
    void bindForm();
    void attach(CaptureDocument& document);
    void complete();
    [[nodiscard]] std::vector<wxWindow*> pickers() const;
    void closePickers();

    // What changed
    void documentChanged(const DocumentChange& change);
    void labelPlaceChanged(AnnotationId id);
    void idle(wxIdleEvent& event);
    void applyDisplayOptions();
    void optionsChanged();
    void keepSettings();

    // View
    void windowResized();
    void updateScrollBars();
    void viewChanged();
    void placeFloating();
    void scrollTo(Point position);
    void onScroll(wxScrollWinEvent& event);
    void setZoom(int32_t percent, Point anchor);
    [[nodiscard]] Point viewCentre() const { return {view_.window().width / 2, view_.window().height / 2}; }

    // Panels
    void placePanels();
    void placeFloatingPanels();

    // Keys
    bool keyInLabel(const wxKeyEvent& event);
    bool zoomByKey(int code, Modifiers held);
    bool focusByKey(int code, Modifiers held);
    bool menuByKey(int code, Modifiers held);
    bool scrollByKey(int code, Modifiers held);
    bool clipboardByKey(Key key, Modifiers held);
    bool leaveOrScrollByKey(Key key, Modifiers held);

    // Mouse
    void pbScreenMouseDown(wxMouseEvent& event);
    void pbScreenMouseMove(wxMouseEvent& event);
    void pbScreenMouseUp(wxMouseEvent& event);
    void scrollBoxMouseWheel(wxMouseEvent& event);
    void zoomByWheel(const wxMouseEvent& event, int32_t steps);
    void captureEnded();
    void popUpShapeMenu(Point at);
    [[nodiscard]] bool menuAt(Point at) const;
    bool carryAway(Point at);
    void tmrScrollingTimer();
    void tmrCanvasCursorTimer();
    void showCursor(Point at);
    [[nodiscard]] Point picturePoint(const wxMouseEvent& event) const;

    // Clipboard
    bool copyOrCut(bool cut);
    bool paste();

    /// The pointer over the canvas, as the status bar and the cursor know it.
    struct Pointer {
        Point at;
        bool inside = false;
        bool moved = false;  ///< since the main window was last told
        CanvasCursor cursor = CanvasCursor::Arrow;
    };
    /// The tools' settings as they are kept for the next canvas, and the options that they follow.
    struct Kept {
        NewAnnotationOptions options;
        TShapeStyle settings;
    };

    CaptureDocument* document_ = nullptr;
    CanvasView view_;
    std::unique_ptr<CanvasController> controller_;
    std::unique_ptr<TextPainter> text_;
    std::unique_ptr<CanvasPainting> painting_;
    int observer_ = 0;
    int waiting_ = 0;  ///< calls on the stack that wait for the user
    std::function<void()> changed_;
    std::function<void()> pointerMoved_;
    Pointer pointer_;
    bool complete_ = false;  ///< what the first picture does not need is there
    bool stateDirty_ = true;
    Kept kept_;
    std::unique_ptr<OptionsListener> optionsListener_;
    int32_t pastedHere_ = 0;  ///< pastes since the last copy
    WheelTurns wheel_;

    wxWindow* scrollBox_ = nullptr;
    CanvasWindow* pbScreen_ = nullptr;
    PropertyPanels* panels_ = nullptr;
    FloatingPanels* floating_ = nullptr;  ///< the window around the panels while they float
    SelectionToolbar* selectionToolbar_ = nullptr;
    std::unique_ptr<LabelEditor> labelEditor_;
    wxTimer tmrScrolling_;
    wxTimer tmrCanvasCursor_;
};

}  // namespace glimmer
