#include "main_window/status_line.h"

#include <wx/frame.h>
#include <wx/menu.h>
#include <wx/statusbr.h>

#include "editor/window/uEditor.h"
#include "main_window/command_context.h"

namespace glimmer {

namespace {

constexpr int fieldCount = 5;
constexpr int zoomField = 4;

wxString described(const wchar_t* what, const Rect& area) {
    return wxString::Format(L"%s %d \u00d7 %d at %d, %d", what, area.width(), area.height(), area.left, area.top);
}

/// What the user is about to do, or which capture of how many this is.
wxString firstField(const CaptureSession& session, EditTool tool, size_t selected, const wxString& toolHint) {
    if (selected > 1) return wxString::Format("%zu of %zu captures selected", selected, session.size());
    if (tool != EditTool::Pointer) return toolHint;
    if (session.size() < 2) return {};
    return wxString::Format("Capture %zu of %zu", session.placeOf(*session.current()) + 1, session.size());
}

}  // namespace

void StatusLine::make() {
    wxFrame& frame = window_.frame();
    wxStatusBar* const bar = frame.CreateStatusBar(fieldCount, wxSTB_SIZEGRIP | wxSTB_SHOW_TIPS | wxSTB_ELLIPSIZE_END,
                                                   wxID_ANY, "barStatus");
    setWidths();
    frame.SetStatusBarPane(-1);  // menus have no help to show there
    const auto onZoom = [this, bar](const wxMouseEvent& event) {
        wxRect field;
        return window_.canvas() != nullptr && bar->GetFieldRect(zoomField, field) &&
               field.Contains(event.GetPosition());
    };
    bar->Bind(wxEVT_MOTION, [bar, onZoom](wxMouseEvent& event) {
        bar->SetCursor(onZoom(event) ? wxCursor(wxCURSOR_HAND) : wxNullCursor);
        event.Skip();
    });
    bar->Bind(wxEVT_LEFT_UP, [this, onZoom](wxMouseEvent& event) {
        event.Skip();
        if (onZoom(event)) showZoomMenu(event.GetPosition());
    });
}

void StatusLine::setWidths() {
    wxFrame& frame = window_.frame();
    const int widths[fieldCount] = {-1, frame.FromDIP(200), frame.FromDIP(110), frame.FromDIP(110), frame.FromDIP(60)};
    if (frame.GetStatusBar() != nullptr) frame.GetStatusBar()->SetStatusWidths(fieldCount, widths);
}

/// The zooms to choose from, at a place of the bar.
void StatusLine::showZoomMenu(const wxPoint& at) {
    wxMenu menu;
    for (const int percent : {25, 50, 75, 100, 150, 200, 300, 400})
        menu.AppendCheckItem(percent, wxString::Format("%d %%", percent))->Check(percent == window_.canvas()->zoom());
    menu.AppendSeparator();
    const wxMenuItem* const width = menu.Append(wxID_ANY, "Fit width\tCtrl+2");
    const wxMenuItem* const page = menu.Append(wxID_ANY, "Fit page\tCtrl+1");
    const int chosen = window_.frame().GetStatusBar()->GetPopupMenuSelectionFromUser(menu, at);
    TEditForm* const canvas = window_.canvas();  // the menu may have outlasted the one before
    if (chosen == wxID_NONE || canvas == nullptr) return;
    if (chosen == width->GetId())
        canvas->zoomToFit(CanvasView::Fit::Width);
    else if (chosen == page->GetId())
        canvas->zoomToFit(CanvasView::Fit::Page);
    else
        canvas->zoomTo(chosen);
}

void StatusLine::show(const CaptureSession& session, size_t selected, const wxString& toolHint) {
    wxFrame& frame = window_.frame();
    if (frame.GetStatusBar() == nullptr) return;
    wxString fields[fieldCount];
    const TEditForm* canvas = window_.canvas();
    const CaptureDocument* current = session.current();
    if (current == nullptr || canvas == nullptr) {
        fields[0] = "No capture";
    } else {
        fields[0] = firstField(session, canvas->tool(), selected, toolHint);
        if (const Rect area = canvas->selectedArea(); !area.empty())
            fields[1] = described(L"Selection", area);
        else if (const TBBShape* shape = current->selectedAnnotation())
            fields[1] = described(L"Annotation", shape->handleRect().normalized());
        if (const auto at = canvas->pointerPosition()) fields[2] = wxString::Format("x %d, y %d", at->x, at->y);
        fields[3] = wxString::Format(L"%d \u00d7 %d px", current->size().width, current->size().height);
        fields[zoomField] = wxString::Format("%d %%", canvas->zoom());
    }
    for (int i = 0; i < fieldCount; ++i)
        if (frame.GetStatusBar()->GetStatusText(i) != fields[i]) frame.SetStatusText(fields[i], i);
}

}  // namespace glimmer
