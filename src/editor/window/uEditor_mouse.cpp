// The mouse: what comes from the window, in device pixels, goes to the controller in picture pixels.

#include <wx/cursor.h>
#include <wx/menu.h>
#include <wx/settings.h>
#include <wx/utils.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>

#include "editor/window/annotation_drag.h"
#include "editor/window/label_editor.h"
#include "editor/window/selection_toolbar.h"
#include "editor/window/uEditor.h"

namespace glimmer {

namespace {

constexpr int scrollingInterval = 50;     // milliseconds
constexpr int canvasCursorInterval = 10;  // milliseconds
constexpr int scrollIncrement = CanvasView::scrollIncrement;
constexpr int mostLines = 1000;  // that a notch scrolls by; Windows offers 100

Modifiers heldKeys(const wxKeyboardState& state) { return {state.ShiftDown(), state.ControlDown(), state.AltDown()}; }

}  // namespace

Point TEditForm::picturePoint(const wxMouseEvent& event) const {
    return view_.toPicture(Point{event.GetX(), event.GetY()});
}

void TEditForm::pbScreenMouseDown(wxMouseEvent& event) {
    const Point at = picturePoint(event);
    pbScreen_->SetFocus();
    if (event.RightDown()) {
        if (pbScreen_->HasCapture()) {
            pbScreen_->ReleaseMouse();
            captureEnded();
        }
        if (controller_->rightPress(at)) popUpShapeMenu({event.GetX(), event.GetY()});
        return;
    }
    if (event.AltDown() && carryAway(at)) return;
    if (event.LeftDClick())
        controller_->doubleClick(at, heldKeys(event));
    else
        controller_->press(at, heldKeys(event));
    if (!controller_->dragging()) return;
    if (!pbScreen_->HasCapture()) pbScreen_->CaptureMouse();
    tmrScrolling_.Start(scrollingInterval);
    selectionToolbar_->place();
}

/// At a place of the canvas, in device pixels.
void TEditForm::popUpShapeMenu(Point at) {
    const Size window = view_.window();
    const std::unique_ptr<wxMenu> menu = makeShapeMenu();
    const Waiting here(*this);  // what is chosen comes after the menu has gone
    pbScreen_->PopupMenu(menu.get(), std::clamp(at.x, 0, window.width), std::clamp(at.y, 0, window.height));
}

/// Whether a long press is waited for: at an annotation, with no other tool in hand. The menu of the empty canvas is
/// not worth the wait before each area that is drawn.
bool TEditForm::menuAt(Point at) const {
    return controller_->mode() == CanvasMode::Annotation && controller_->tool() == EditTool::Pointer &&
           controller_->annotationAt(view_.toPicture(at)) != noAnnotation;
}

/// With Alt held an annotation is dragged out of the canvas, as a copy.
bool TEditForm::carryAway(Point at) {
    if (controller_->mode() != CanvasMode::Annotation) return false;
    const TBBShape* shape = document_->annotations().find(controller_->annotationAt(at));
    if (shape == nullptr) return false;
    finishEditing();
    const TBBShape copy = *shape;
    document_->selectAnnotation(copy.id());
    const Waiting here(*this);
    dragAnnotation(pbScreen_, copy);
    return true;
}

std::optional<Point> TEditForm::pointerPosition() const {
    const bool over =
        pointer_.inside && Rect{0, 0, document_->size().width, document_->size().height}.contains(pointer_.at);
    return over ? std::optional(pointer_.at) : std::nullopt;
}

void TEditForm::pbScreenMouseMove(wxMouseEvent& event) {
    pointer_.at = picturePoint(event);
    pointer_.inside = pointer_.moved = true;
    controller_->move(pointer_.at, heldKeys(event));
    showCursor(pointer_.at);
    if (!tmrCanvasCursor_.IsRunning() && controller_->dragging()) tmrCanvasCursor_.Start(canvasCursorInterval);
}

void TEditForm::pbScreenMouseUp(wxMouseEvent& event) {
    if (pbScreen_->HasCapture()) pbScreen_->ReleaseMouse();
    controller_->release(picturePoint(event), heldKeys(event));
    captureEnded();
}

void TEditForm::captureEnded() {
    tmrScrolling_.Stop();
    tmrCanvasCursor_.Stop();
    selectionToolbar_->place();
    labelEditor_->place();
}

/// While a drag is under way: as if the mouse had moved, and scrolls when it is outside the view.
void TEditForm::tmrScrollingTimer() {
    // Esc or a command may have ended the drag while the button is held.
    if (!controller_->dragging() && pbScreen_->HasCapture()) pbScreen_->ReleaseMouse();
    if (!pbScreen_->HasCapture()) {
        tmrScrolling_.Stop();
        if (controller_->dragging()) controller_->captureLost();
        return;
    }
    const wxPoint at = pbScreen_->ScreenToClient(wxGetMousePosition());
    const Size window = view_.window();
    // The farther outside, the faster.
    const auto way = [](int at, int length) {
        if (at < 0) return -scrollIncrement - (-at / 2);
        if (at >= length) return scrollIncrement + (at - length) / 2;
        return 0;
    };
    const Point by{way(at.x, window.width), way(at.y, window.height)};
    if (by.x != 0 || by.y != 0) scrollTo({view_.scroll().x + by.x, view_.scroll().y + by.y});
    pointer_.at = view_.toPicture(Point{at.x, at.y});
    pointer_.moved = true;
    controller_->move(pointer_.at, heldKeys(wxGetMouseState()));
}

/// Keeps the cursor right during a drag, when a key or the picture under it changes without the mouse moving.
void TEditForm::tmrCanvasCursorTimer() {
    if (!controller_->dragging()) {
        tmrCanvasCursor_.Stop();
        return;
    }
    showCursor(pointer_.at);
}

void TEditForm::showCursor(Point at) {
    const auto stock = [](CanvasCursor cursor) {
        switch (cursor) {
            case CanvasCursor::Cross:
                return wxCURSOR_CROSS;
            case CanvasCursor::Move:
                return wxCURSOR_SIZING;
            case CanvasCursor::NorthWestSouthEast:
                return wxCURSOR_SIZENWSE;
            case CanvasCursor::NorthEastSouthWest:
                return wxCURSOR_SIZENESW;
            case CanvasCursor::Vertical:
                return wxCURSOR_SIZENS;
            case CanvasCursor::Horizontal:
                return wxCURSOR_SIZEWE;
            case CanvasCursor::Pen:
                return wxCURSOR_PENCIL;
            case CanvasCursor::Eraser:
                return wxCURSOR_CROSS;
            case CanvasCursor::Arrow:
                break;
        }
        return wxCURSOR_ARROW;
    };
    const CanvasCursor cursor = controller_->cursorAt(at);
    if (cursor == pointer_.cursor) return;
    pointer_.cursor = cursor;
    pbScreen_->SetCursor(wxCursor(stock(cursor)));
}

/// The place under the pointer stays there.
void TEditForm::zoomByWheel(const wxMouseEvent& event, int32_t steps) {
    const wxPoint screen = static_cast<wxWindow*>(event.GetEventObject())->ClientToScreen(event.GetPosition());
    const wxPoint at = pbScreen_->ScreenToClient(screen);
    CanvasView next = view_;
    for (int32_t i = std::abs(steps); i > 0; --i) {
        if (steps > 0)
            next.zoomIn({});
        else
            next.zoomOut({});
    }
    setZoom(next.zoom(), {at.x, at.y});
}

void TEditForm::scrollBoxMouseWheel(wxMouseEvent& event) {
    const auto now = std::chrono::steady_clock::now();
    const int32_t rotation = event.GetWheelRotation();
    if (event.ControlDown()) {
        const int32_t steps = wheel_.turn(WheelTurns::Use::Zoom, rotation, 1, now);
        zoomByWheel(event, steps);
        return;
    }
    const bool tilted = event.GetWheelAxis() == wxMOUSE_WHEEL_HORIZONTAL;
    const bool across = tilted || event.ShiftDown();
    const int32_t page = (across ? view_.window().width : view_.window().height) - scrollIncrement;
    const int32_t lines = tilted ? event.GetColumnsPerAction() : event.GetLinesPerAction();
    const int32_t way =
        event.IsPageScroll() ? std::max(page, scrollIncrement) : std::clamp(lines, 0, mostLines) * scrollIncrement;
    const int32_t by = wheel_.turn(across ? WheelTurns::Use::Across : WheelTurns::Use::Down, rotation, way, now);
    Point to = view_.scroll();
    if (across)
        to.x += tilted ? by : -by;
    else
        to.y -= by;
    scrollTo(to);
}

}  // namespace glimmer
