// The parts of the main editor window and how they lie: what the first picture needs at once, all else after it. And
// the place of the window itself, from one run to the next.

#include <wx/gdicmn.h>
#include <wx/panel.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/splitter.h>
#include <wx/tooltip.h>
#include <wx/wupdlock.h>

#include <algorithm>
#include <functional>
#include <utility>
#include <variant>

#include "common/icons.h"
#include "editor/window/uEditor.h"
#include "main_window/canvas_stage.h"
#include "main_window/capture_list.h"
#include "main_window/main_toolbar.h"
#include "main_window/output_commands.h"
#include "main_window/selection_panel.h"
#include "main_window/thumbnail_maker.h"
#include "main_window/tool_buttons.h"
#include "main_window/uMainEditor.h"
#include "settings/form_store.h"
#include "settings/message_box.h"
#include "settings/options.h"
#include "settings/settings.h"

namespace glimmer {

namespace {

// Device-independent pixels.
const wxSize standardSize(1180, 780);
const wxSize smallestSize(480, 360);
constexpr int narrowestLeftPanel = 120;
constexpr int widestLeftPanel = 2000;
constexpr int statusBarMargin = 6;  ///< around its text, above and below together

constexpr const char* section = "MainEditor";

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

    auto* splitter = new wxSplitterWindow(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                          wxSP_LIVE_UPDATE | wxSP_NOBORDER, "splLeftPanel");
    splitter->SetMinimumPaneSize(FromDIP(narrowestLeftPanel));
    leftPanel_ = makeLeftPanel(splitter);
    CanvasStage::Events events;
    events.quiet = [this] { return runner_.running() == 0; };
    events.changed = [this] { stateStale_ = true; };
    events.pointerMoved = [this] { updateStatus(); };
    stage_ = new CanvasStage(splitter, std::move(events));
    splitter->Initialize(stage_);
    leftPanel_->Hide();
    showLeftPanel(OptionsHolder().on("chkLeftPanelVisible"));
    column->Add(splitter, 1, wxEXPAND);
    column->AddSpacer(GetCharHeight() + FromDIP(statusBarMargin));
    SetSizer(column);
}

/// The list of captures, and the labels below it.
wxWindow* TMainEditor::makeLeftPanel(wxWindow* parent) {
    auto* panel = new wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "pnlLeft");
    const auto doInList = [this](ListAction action) { act(action, session_, *list_); };
    CaptureList::Events events;
    events.shown = [this](size_t place) { session_.show(session_.at(place)); };
    events.selectionChanged = [this] { stateStale_ = true; };
    events.renamed = [this](size_t place, const wxString& name) {
        if (place >= session_.size()) return;
        const Status renamed = session_.rename(session_.at(place), name.ToStdString(wxConvUTF8));
        if (!renamed) showError(renamed.message());
    };
    events.moved = [this](size_t from, size_t to) { session_.move(from, to); };
    events.menu = [this](const wxPoint& screen) {
        showActionsMenu(session_, *list_, screen,
                        [this](CaptureDocument& capture) { outputHere(saveCaptures, {&capture}); });
    };
    events.deletePressed = [doInList] { doInList(ListAction::DeleteSelected); };
    list_ = new CaptureList(panel, std::move(events));
    labels_ = new SelectionPanel(panel, [this, doInList](const SelectionPanel::Action& action) {
        if (const ListAction* inList = std::get_if<ListAction>(&action)) doInList(*inList);
        if (const OutputCommand* out = std::get_if<OutputCommand>(&action)) outputHere(*out, selectedCaptures());
    });
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(list_, 1, wxEXPAND);
    column->Add(labels_, 0, wxEXPAND);
    panel->SetSizer(column);
    return panel;
}

/// The window came to a monitor of another scale, or the user chose another one.
void TMainEditor::scaleChanged() {
    status_.setWidths();
    thumbnails_->makeAnew();
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
    thumbnails_->makeAnew();
    Refresh();
}

void TMainEditor::showLeftPanel(bool show) {
    auto* splitter = static_cast<wxSplitterWindow*>(leftPanel_->GetParent());
    if (show == splitter->IsSplit()) return;
    if (show) {
        const int width = std::clamp(OptionsHolder().number("spnLeftPanelWidth"), narrowestLeftPanel, widestLeftPanel);
        splitter->SplitVertically(leftPanel_, stage_, FromDIP(width));
    } else {
        splitter->Unsplit(leftPanel_);
    }
}

/// The picture is up: now the rest of the window.
void TMainEditor::complete() {
    if (toolbar_->filled()) return;
    status_.make();
    GetSizer()->Remove(static_cast<int>(GetSizer()->GetItemCount()) - 1);  // the room that was kept for it
    toolbar_->fill();
    tools_->addShapeMenu();
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
    for (wxWindow* frame : {leftPanel_, leftPanel_->GetParent(), static_cast<wxWindow*>(stage_)}) frame->SetLabel("");
}

// --- from one run to the next -------------------------------------------------------------------------------------

void TMainEditor::restorePlace() {
    SetMinSize(FromDIP(smallestSize));
    restoreGeometry(settings(), settingsSection(section), *this, FromDIP(standardSize));
}

void TMainEditor::restoreToolbar() {
    const TCachedMemIniFile& store = settings();
    const std::string name = settingsSection(section);
    toolbar_->setButtonSize(static_cast<ToolbarSize>(store.readInteger(name, "ToolbarSize", 1, 0, 2)));
    toolbar_->setPinned(store.readBool(name, "btnFix", true));
    toolbar_->setFolded(store.readBool(name, "ToolbarFolded", false));
}

void TMainEditor::storeState() {
    TCachedMemIniFile& store = settings();
    const std::string name = settingsSection(section);
    saveGeometry(store, name, *this);
    store.writeInteger(name, "ToolbarSize", static_cast<int32_t>(toolbar_->buttonSize()));
    store.writeBool(name, "btnFix", toolbar_->pinned());
    store.writeBool(name, "ToolbarFolded", toolbar_->folded());
    const auto* splitter = static_cast<wxSplitterWindow*>(leftPanel_->GetParent());
    if (splitter->IsSplit()) OptionsHolder().setNumber("spnLeftPanelWidth", ToDIP(splitter->GetSashPosition()));
    saveOptions();
}

}  // namespace glimmer
