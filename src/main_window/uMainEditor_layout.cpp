// The parts of the main editor window and how they lie: what the first picture needs at once, all else after it.

#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/splitter.h>
#include <wx/tooltip.h>

#include <functional>
#include <utility>

#include "common/icons.h"
#include "main_window/canvas_stage.h"
#include "main_window/capture_list.h"
#include "main_window/capture_panel.h"
#include "main_window/main_toolbar.h"
#include "main_window/quiet_work.h"
#include "main_window/selection_panel.h"
#include "main_window/tool_buttons.h"
#include "main_window/uMainEditor.h"
#include "main_window/window_place.h"
#include "settings/options.h"

namespace glimmer {

namespace {

constexpr int statusBarMargin = 6;  ///< around its text, above and below together; device-independent pixels

}  // namespace

void TMainEditor::layOut() {
    SetBackgroundColour(face_ = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
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

    splitter_ = new wxSplitterWindow(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxSP_LIVE_UPDATE | wxSP_NOBORDER,
                                     "splLeftPanel");
    CapturePanel::Events inPanel;
    inPanel.selectionChanged = [this] { stateStale_ = true; };
    inPanel.output = [this](OutputCommand command, const Captures& captures) { outputHere(command, captures); };
    left_ = new CapturePanel(splitter_, session_, std::move(inPanel));
    CanvasStage::Events onStage;
    onStage.quiet = [this] { return runner_.running() == 0; };
    onStage.changed = [this] { stateStale_ = true; };
    onStage.pointerMoved = [this] { updateStatus(); };
    stage_ = new CanvasStage(splitter_, std::move(onStage));
    splitter_->Initialize(stage_);
    left_->Hide();
    showLeftPanel(*splitter_, *left_, *stage_, OptionsHolder().on("chkLeftPanelVisible"));
    column->Add(splitter_, 1, wxEXPAND);
    column->AddSpacer(GetCharHeight() + FromDIP(statusBarMargin));
    SetSizer(column);
}

/// The window came to a monitor of another scale, or the user chose another one.
void TMainEditor::scaleChanged() {
    status_.setWidths();
    quietWork_->makeThumbnailsAnew();
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
    stage_->takeColours();
    quietWork_->makeThumbnailsAnew();
    Refresh();
}

/// The picture is up: now the rest of the window.
void TMainEditor::complete() {
    if (toolbar_->filled()) return;
    status_.make();
    GetSizer()->Remove(static_cast<int>(GetSizer()->GetItemCount()) - 1);  // the room that was kept for it
    toolbar_->fill();
    tools_->addShapeMenu();
    left_->complete();
    refreshState();  // before the layout: what is of no use takes no room
    // What a screen reader calls the parts of the window; without that it would be the names of the controls.
    toolbar_->SetLabel("Main toolbar");
    left_->labels().SetLabel("Selection");
    for (wxWindow* frame :
         {static_cast<wxWindow*>(left_), static_cast<wxWindow*>(splitter_), static_cast<wxWindow*>(stage_)})
        frame->SetLabel("");
    left_->list().SetToolTip("Click the captions once or press F2 to rename");
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

}  // namespace glimmer
