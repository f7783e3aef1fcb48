// The parts of the main editor window and how they lie: what the first picture needs at once, all else after it.

#include <wx/dcclient.h>
#include <wx/menu.h>
#include <wx/panel.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/splitter.h>
#include <wx/statusbr.h>
#include <wx/tooltip.h>
#include <wx/wupdlock.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "common/contrast.h"
#include "common/icons.h"
#include "editor/canvas/edit_tool.h"
#include "editor/window/uEditor.h"
#include "main_window/capture_list.h"
#include "main_window/main_toolbar.h"
#include "main_window/selection_panel.h"
#include "main_window/uMainEditor.h"
#include "settings/options.h"

namespace glimmer {

namespace {

// Device-independent pixels.
constexpr int narrowestLeftPanel = 120;
constexpr int widestLeftPanel = 2000;
constexpr int zoomField = 4;        ///< of the status bar
constexpr int statusBarMargin = 6;  ///< around its text, above and below together

}  // namespace

void TMainEditor::layOut() {
    auto* column = new wxBoxSizer(wxVERTICAL);
    toolbar_ = new TMainToolbar(this, [this](const MainCommand& command) { run(command); });
    toolbar_->onHeightChange([this] {
        Layout();
        Refresh();  // what moved is not always painted where it came to
    });
    // Neither bar is there yet, but nothing moves when it comes.
    wxSizerFlags room = wxSizerFlags().Expand();
    if (OptionsHolder().on("chkShowToolbar")) room.ReserveSpaceEvenIfHidden();
    column->Add(toolbar_, room);

    auto* splitter = new wxSplitterWindow(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                          wxSP_LIVE_UPDATE | wxSP_NOBORDER, "splLeftPanel");
    splitter->SetMinimumPaneSize(FromDIP(narrowestLeftPanel));
    auto* left = new wxPanel(splitter, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "pnlLeft");
    leftPanel_ = left;
    CaptureList::Events events;
    events.shown = [this](size_t place) { show(place); };
    events.selectionChanged = [this] { stateStale_ = true; };
    events.renamed = [this](size_t place, const wxString& name) { renameCapture(place, name); };
    events.moved = [this](size_t from, size_t to) { moveCapture(from, to); };
    events.menu = [this](const wxPoint& screen) { showActionsMenu(screen); };
    events.deletePressed = [this] { deleteCaptures(list_->selected()); };
    list_ = new CaptureList(left, std::move(events));
    labels_ = new SelectionPanel(left, [this](std::string_view control) { onLabel(control); });
    auto* leftColumn = new wxBoxSizer(wxVERTICAL);
    leftColumn->Add(list_, 1, wxEXPAND);
    leftColumn->Add(labels_, 0, wxEXPAND);
    left->SetSizer(leftColumn);

    canvasHost_ = new wxPanel(splitter, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "pnlCanvas");
    canvasHost_->SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_APPWORKSPACE));
    canvasHost_->SetSizer(new wxBoxSizer(wxVERTICAL));
    canvasHost_->Bind(wxEVT_PAINT, [this](wxPaintEvent&) {
        wxPaintDC dc(canvasHost_);
        if (current_ != nullptr) return;
        dc.SetTextForeground(readableOn(canvasHost_->GetBackgroundColour()));
        dc.SetFont(GetFont().Scaled(1.3F));
        dc.DrawLabel("Open a picture or project with Ctrl + O, or drop one here.", canvasHost_->GetClientRect(),
                     wxALIGN_CENTRE);
    });
    canvasHost_->Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        if (current_ == nullptr) canvasHost_->Refresh();
        event.Skip();
    });
    splitter->Initialize(canvasHost_);
    left->Hide();
    showLeftPanel(OptionsHolder().on("chkLeftPanelVisible"));
    column->Add(splitter, 1, wxEXPAND);
    column->AddSpacer(GetCharHeight() + FromDIP(statusBarMargin));
    SetSizer(column);
}

void TMainEditor::makeStatusBar() {
    wxStatusBar* const status =
        CreateStatusBar(5, wxSTB_SIZEGRIP | wxSTB_SHOW_TIPS | wxSTB_ELLIPSIZE_END, wxID_ANY, "barStatus");
    setStatusWidths();
    SetStatusBarPane(-1);  // menus have no help to show there
    GetSizer()->Remove(static_cast<int>(GetSizer()->GetItemCount()) - 1);
    const auto onZoom = [this, status](const wxMouseEvent& event) {
        wxRect field;
        return canvas_ != nullptr && status->GetFieldRect(zoomField, field) && field.Contains(event.GetPosition());
    };
    status->Bind(wxEVT_MOTION, [status, onZoom](wxMouseEvent& event) {
        status->SetCursor(onZoom(event) ? wxCursor(wxCURSOR_HAND) : wxNullCursor);
        event.Skip();
    });
    status->Bind(wxEVT_LEFT_UP, [this, onZoom](wxMouseEvent& event) {
        event.Skip();
        if (onZoom(event)) showZoomMenu(event.GetPosition());
    });
}

/// The zooms to choose from, at a place of the status bar.
void TMainEditor::showZoomMenu(const wxPoint& at) {
    if (canvas_ == nullptr) return;
    wxMenu menu;
    for (const int percent : {25, 50, 75, 100, 150, 200, 300, 400})
        menu.AppendCheckItem(percent, wxString::Format("%d %%", percent))->Check(percent == canvas_->zoom());
    menu.AppendSeparator();
    const wxMenuItem* const width = menu.Append(wxID_ANY, "Fit width\tCtrl+2");
    const wxMenuItem* const page = menu.Append(wxID_ANY, "Fit page\tCtrl+1");
    const int chosen = GetStatusBar()->GetPopupMenuSelectionFromUser(menu, at);
    if (chosen == wxID_NONE || canvas_ == nullptr) return;
    if (chosen == width->GetId())
        canvas_->zoomToFit(CanvasView::Fit::Width);
    else if (chosen == page->GetId())
        canvas_->zoomToFit(CanvasView::Fit::Page);
    else
        canvas_->zoomTo(chosen);
}

void TMainEditor::setStatusWidths() {
    const int widths[] = {-1, FromDIP(200), FromDIP(110), FromDIP(110), FromDIP(60)};
    if (GetStatusBar() != nullptr) GetStatusBar()->SetStatusWidths(5, widths);
}

/// The window came to a monitor of another scale, or the user chose another one.
void TMainEditor::scaleChanged() {
    setStatusWidths();
    makeThumbnailsAnew();
}

/// The user chose another theme. What takes its colours when it paints needs nothing of this.
void TMainEditor::coloursChanged() {
    const wxColour face = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE);
    const std::function<void(wxWindow&)> take = [&](wxWindow& window) {
        if (window.UseBackgroundColour() && window.GetBackgroundColour() == face_) window.SetBackgroundColour(face);
        for (wxWindow* child : window.GetChildren())
            if (!child->IsTopLevel()) take(*child);
    };
    for (wxWindow* child : GetChildren()) take(*child);
    SetBackgroundColour(face_ = face);
    canvasHost_->SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_APPWORKSPACE));
    makeThumbnailsAnew();
    Refresh();
}

void TMainEditor::showLeftPanel(bool show) {
    auto* splitter = static_cast<wxSplitterWindow*>(leftPanel_->GetParent());
    if (show == splitter->IsSplit()) return;
    if (show) {
        const int width = std::clamp(OptionsHolder().number("spnLeftPanelWidth"), narrowestLeftPanel, widestLeftPanel);
        splitter->SplitVertically(leftPanel_, canvasHost_, FromDIP(width));
    } else {
        splitter->Unsplit(leftPanel_);
    }
}

/// The picture is up: now the rest of the window.
void TMainEditor::complete() {
    if (toolbar_->filled()) return;
    makeStatusBar();
    toolbar_->fill();
    addShapeMenu();
    {
        const wxWindowUpdateLocker atOnce(leftPanel_);
        list_->Show();
        labels_->fill();
    }
    refreshState();  // before the layout: what is of no use takes no room
    nameForReaders();
    list_->SetToolTip("Click the captions once or press F2 to rename");
    GetSizer()->GetItem(toolbar_)->SetFlag(wxEXPAND);  // from now on a hidden one takes no room
    applyOptions();
    SetIcons(applicationIcons());
    wakeTimers();
}

void TMainEditor::applyOptions() {
    wxToolTip::Enable(OptionsHolder().on("chkDisplayHintsNew"));
    toolbar_->Show(OptionsHolder().on("chkShowToolbar"));
    Layout();
}

/// What a screen reader calls the parts of the window; without that it would be the names of the controls.
void TMainEditor::nameForReaders() {
    toolbar_->SetLabel("Main toolbar");
    labels_->SetLabel("Selection");
    for (wxWindow* frame : {leftPanel_, leftPanel_->GetParent(), static_cast<wxWindow*>(canvasHost_)})
        frame->SetLabel("");
}

void TMainEditor::addShapeMenu() {
    static constexpr std::pair<const char*, EditTool> shapes[] = {{"Rectangle", EditTool::TextShapeRectangle},
                                                                  {"Ellipse", EditTool::TextShapeEllipse},
                                                                  {"Polygon", EditTool::TextShapePolygon}};
    auto menu = std::make_unique<wxMenu>();
    ToolButton* button = toolbar_->button("btnTextShape");
    for (const auto& [caption, tool] : shapes) {
        wxMenuItem* item = menu->AppendRadioItem(wxID_ANY, caption);
        menu->Bind(
            wxEVT_MENU,
            [this, button, tool = tool](wxCommandEvent&) {
                shapeTool_ = tool;
                button->press();
            },
            item->GetId());
    }
    button->setMenu(std::move(menu));
}

/// The shape button stands for that tool, and its menu says so.
void TMainEditor::markShapeTool(EditTool tool) {
    shapeTool_ = tool;
    const ToolButton* button = toolbar_->button("btnTextShape");
    if (button == nullptr || button->menu() == nullptr) return;
    const int at = static_cast<int>(tool) - static_cast<int>(EditTool::TextShapeRectangle);
    wxMenuItem* item = button->menu()->FindItemByPosition(static_cast<size_t>(at));
    if (item != nullptr && !item->IsChecked()) item->Check();
}

}  // namespace glimmer
