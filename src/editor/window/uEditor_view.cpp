// What of the picture is seen: size, scrolling, zoom.

#include <wx/settings.h>

#include "editor/window/canvas_painting.h"
#include "editor/window/label_editor.h"
#include "editor/window/selection_toolbar.h"
#include "editor/window/uEditor.h"

namespace glimmer {

namespace {

constexpr int32_t scrollIncrement = CanvasView::scrollIncrement;

}  // namespace

void TEditForm::windowResized() {
    const wxSize size = scrollBox_->GetClientSize();
    pbScreen_->SetSize(0, 0, size.x, size.y);
    view_.setWindowSize({size.x, size.y});
    updateScrollBars();
    viewChanged();
}

void TEditForm::updateScrollBars() {
    const Size all = view_.extent();
    const Size window = view_.window();
    // Nothing of the picture moves when both come later.
    if (!complete_ && all.width > window.width && all.height > window.height) return;
    scrollBox_->SetScrollbar(wxHORIZONTAL, view_.scroll().x, window.width, all.width);
    scrollBox_->SetScrollbar(wxVERTICAL, view_.scroll().y, window.height, all.height);
    // A bar that came or went has changed the room.
    const wxSize size = scrollBox_->GetClientSize();
    if (size.x == view_.window().width && size.y == view_.window().height) return;
    pbScreen_->SetSize(0, 0, size.x, size.y);
    view_.setWindowSize({size.x, size.y});
    scrollBox_->SetScrollbar(wxHORIZONTAL, view_.scroll().x, size.x, all.width);
    scrollBox_->SetScrollbar(wxVERTICAL, view_.scroll().y, size.y, all.height);
}

/// Everything on the canvas lies elsewhere now.
void TEditForm::viewChanged() {
    painting_->viewChanged(controller_->overlay());
    placeFloating();
    stateDirty_ = true;
}

void TEditForm::placeFloating() {
    labelEditor_->place();
    selectionToolbar_->place();
}

void TEditForm::scrollTo(Point position) {
    const Point before = view_.scroll();
    view_.scrollTo(position);
    const Point after = view_.scroll();
    if (before == after) return;
    scrollBox_->SetScrollPos(wxHORIZONTAL, after.x);
    scrollBox_->SetScrollPos(wxVERTICAL, after.y);
    if (!painting_->scroll(before.x - after.x, before.y - after.y)) {
        viewChanged();
        return;
    }
    placeFloating();
    stateDirty_ = true;
}

void TEditForm::onScroll(wxScrollWinEvent& event) {
    const bool across = event.GetOrientation() == wxHORIZONTAL;
    Point to = view_.scroll();
    int32_t& at = across ? to.x : to.y;
    const int32_t page = (across ? view_.window().width : view_.window().height) - scrollIncrement;
    const wxEventType type = event.GetEventType();
    if (type == wxEVT_SCROLLWIN_TOP) at = 0;
    if (type == wxEVT_SCROLLWIN_BOTTOM) at = across ? view_.maxScroll().x : view_.maxScroll().y;
    if (type == wxEVT_SCROLLWIN_LINEUP) at -= scrollIncrement;
    if (type == wxEVT_SCROLLWIN_LINEDOWN) at += scrollIncrement;
    if (type == wxEVT_SCROLLWIN_PAGEUP) at -= page;
    if (type == wxEVT_SCROLLWIN_PAGEDOWN) at += page;
    if (type == wxEVT_SCROLLWIN_THUMBTRACK || type == wxEVT_SCROLLWIN_THUMBRELEASE) at = event.GetPosition();
    scrollTo(to);
}

void TEditForm::setZoom(int32_t percent, Point anchor) {
    const int32_t before = view_.zoom();
    view_.setZoom(percent, anchor);
    if (view_.zoom() == before) return;
    updateScrollBars();
    viewChanged();
}

void TEditForm::zoomTo(int32_t percent) { setZoom(percent, viewCentre()); }

void TEditForm::zoomToFit(CanvasView::Fit fit) {
    const wxSize room = scrollBox_->GetSize();  // without any bars
    const int bar = wxSystemSettings::GetMetric(wxSYS_VSCROLL_X, scrollBox_);
    setZoom(CanvasView::fittingZoom(fit, view_.picture(), {room.x, room.y}, bar), {});
}

void TEditForm::zoomIn() {
    CanvasView next = view_;
    next.zoomIn({});
    zoomTo(next.zoom());
}

void TEditForm::zoomOut() {
    CanvasView next = view_;
    next.zoomOut({});
    zoomTo(next.zoom());
}

void TEditForm::reveal(const Rect& area) {
    CanvasView next = view_;
    if (next.scrollIntoView(area)) scrollTo(next.scroll());
}

}  // namespace glimmer
