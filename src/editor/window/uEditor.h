#pragma once

#include <wx/panel.h>
#include <wx/timer.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "editor/annotations/new_annotation_options.h"
#include "editor/canvas/canvas_controller.h"
#include "editor/canvas/canvas_place.h"
#include "editor/canvas/canvas_view.h"
#include "editor/canvas/wheel_turns.h"
#include "editor/canvas/working_picture.h"
#include "editor/document/document.h"
#include "editor/window/canvas_surface.h"
#include "editor/window/canvas_window.h"

class wxMenu;

namespace glimmer {

class FloatingPanels;
class LabelEditor;
class OptionsListener;
class PropertyPanels;
class SelectionToolbar;

/// The editing canvas of one capture: shows it with its annotations and lets the user select, annotate, draw and
/// change pixels. Thin: what a press or a key means is the controller's (canvas_controller.h), what is on the screen
/// is painted by the core. Hosted without a border by the main editor window, which owns the document; made when a
/// capture is shown and destroyed when another one is.
///
/// The sources: uEditor.cpp (making, view, state), uEditor_panels.cpp, uEditor_paint.cpp, uEditor_mouse.cpp,
/// uEditor_keys.cpp, uEditor_clipboard.cpp, uEditor_pickers.cpp.
class TEditForm : public wxPanel, private CanvasHost {
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

    [[nodiscard]] CaptureDocument& document() { return *document_; }
    [[nodiscard]] CanvasController& controller() { return *controller_; }

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
    [[nodiscard]] int32_t zoom() const { return view_.zoom(); }
    /// "Add Image": puts the picture on the canvas as an annotation.
    bool insertPicture(TBitmap picture) { return controller_->insertPicture(std::move(picture)); }
    /// Picture pixel under the pointer, if it is over the picture; what is selected (empty: nothing).
    [[nodiscard]] std::optional<Point> pointerPosition() const;
    [[nodiscard]] Rect selectedArea() const { return document_->selection().bounds(document_->size()); }
    /// A rectangle of the picture in the canvas's window coordinates.
    [[nodiscard]] Rect inView(const Rect& picture) const { return view_.toView(picture); }
    /// Called, when there is time, after the tool, the zoom, the selection or what can be undone has changed.
    void onChanged(std::function<void()> changed) { changed_ = std::move(changed); }
    /// The same when nothing but the pointer's place has changed.
    void onPointerMoved(std::function<void()> moved) { pointerMoved_ = std::move(moved); }
    /// Paints what has become invalid without waiting for the queue.
    void paintNow() { pbScreen_->Update(); }
    /// The focus for the canvas or, coming from behind, for the property panels.
    void takeFocus(bool fromBehind);
    /// Ends what is being typed, dragged or drawn, keeping it; before saving, switching or closing.
    void finishEditing();
    /// Capture mode: the user picks an area; `finished` gets it, or an empty one when it was cancelled.
    void beginCapture(std::function<void(Rect)> finished) { controller_->beginCapture(std::move(finished)); }

    /// Runs a command of a menu, button or shortcut, the clipboard's included; false when there is nothing to do.
    bool executeCommand(EditCommand command);
    [[nodiscard]] bool canExecute(EditCommand command) const;
    /// A key press; true when it was taken. The form previews all keys of its children.
    bool FormKeyDown(wxKeyEvent& event);
    /// The popup menu of annotations (`pmShapeMenu`).
    [[nodiscard]] std::unique_ptr<wxMenu> makeShapeMenu();
    /// The list dialog behind "Renumber..." and "Reorder...".
    void mnuNumberSetClick();
    /// Opens the style picker, the font picker.
    void lblStyleClick();
    void lblFontNameClick();
    /// A swatch was pressed: picks the colour of the property that `name` stands for.
    void imgShapeForegroundMouseDown(const std::string& name, wxWindow& swatch);
    /// Stores the drawing in the annotation and returns to annotation mode.
    void endPenDrawing() { controller_->endDrawing(); }

    bool AcceptsFocus() const override { return false; }

private:
    // CanvasHost
    TextPainter& textPainter() override;
    void overlayChanged() override;
    void beginTextEdit(AnnotationId id) override;
    void finishTextEdit() override;
    void inkChanged(const Rect& area) override;
    void stateChanged() override;
    void reveal(const Rect& area) override;
    void pickColour(Colour initial, std::function<void(Colour)> picked) override;
    void failed(const std::string& message) override;

    // Layout and view
    void makeCanvas();
    void attach(CaptureDocument& document);
    [[nodiscard]] std::vector<wxWindow*> pickers() const;
    void closePickers();
    template <class Answer>
    auto forThisCapture(Answer answer);

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
    void complete();
    void placePanels();
    void placeFloatingPanels();
    void optionsChanged();
    void keepSettings();
    void documentChanged(const DocumentChange& change);
    void windowResized();
    void updateScrollBars();
    void scrollTo(Point position);
    bool scrollByKey(int code, Modifiers held);
    void viewChanged();
    void placeFloating();
    void onScroll(wxScrollWinEvent& event);
    void setZoom(int32_t percent, Point anchor);
    [[nodiscard]] Point viewCentre() const { return {view_.window().width / 2, view_.window().height / 2}; }

    // Painting
    void paintCanvas();
    void scrollPixels(int32_t dx, int32_t dy);
    void invalidateView(const Rect& viewArea);
    void invalidatePicture(const Rect& pictureArea);
    void applyDisplayOptions();

    // Mouse
    void pbScreenMouseDown(wxMouseEvent& event);
    void pbScreenMouseMove(wxMouseEvent& event);
    void pbScreenMouseUp(wxMouseEvent& event);
    void scrollBoxMouseWheel(wxMouseEvent& event);
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

    void pickColourAt(wxWindow& owner, Colour initial, std::function<void(Colour)> picked);
    void idle(wxIdleEvent& event);

    CaptureDocument* document_ = nullptr;
    CanvasView view_;
    std::unique_ptr<CanvasController> controller_;
    std::unique_ptr<TextPainter> text_;
    std::unique_ptr<WorkingPicture> working_;
    CanvasSurface surface_;
    CanvasOverlay shownOverlay_;
    CanvasLook look_;
    int observer_ = 0;
    int waiting_ = 0;  ///< calls on the stack that wait for the user
    std::function<void()> changed_;
    std::function<void()> pointerMoved_;
    Point pointer_;
    bool pointerInside_ = false;
    bool pointerDirty_ = false;
    bool complete_ = false;  ///< what the first picture does not need is there
    bool stateDirty_ = false;
    NewAnnotationOptions newAnnotations_;  ///< the options as last seen
    TShapeStyle keptSettings_;             ///< the last used style as the settings have it
    std::unique_ptr<OptionsListener> optionsListener_;
    int32_t pastedHere_ = 0;  ///< pastes since the last copy
    CanvasCursor shownCursor_ = CanvasCursor::Arrow;
    WheelTurns wheel_;

    wxWindow* scrollBox_ = nullptr;
    CanvasWindow* pbScreen_ = nullptr;
    PropertyPanels* panels_ = nullptr;
    FloatingPanels* floating_ = nullptr;  ///< the window around the panels while they float
    SelectionToolbar* selectionToolbar_ = nullptr;
    LabelEditor* labelEditor_ = nullptr;
    wxTimer tmrScrolling_;
    wxTimer tmrCanvasCursor_;
    wxTimer tmrEditingAnnotation_;
};

}  // namespace glimmer
