// The main editor window: its commands and keys, what it hears of its session, its state towards the user.

#include "main_window/uMainEditor.h"

#include <wx/accel.h>

#include <utility>

#include "common/host_kind.h"
#include "common/inside_modal.h"
#include "common/wx_text.h"
#include "editor/window/uEditor.h"
#include "main_window/bring_forward.h"
#include "main_window/canvas_stage.h"
#include "main_window/capture_list.h"
#include "main_window/capture_panel.h"
#include "main_window/leaving.h"
#include "main_window/main_toolbar.h"
#include "main_window/project_commands.h"
#include "main_window/quiet_work.h"
#include "main_window/selection_panel.h"
#include "main_window/tool_buttons.h"
#include "main_window/window_place.h"
#include "output/places/output_folders.h"
#include "settings/message_box.h"
#include "settings/options.h"
#include "settings/settings.h"

namespace glimmer {

TMainEditor* pMainEditor = nullptr;

TMainEditor::TMainEditor(TSaver& saver, const std::filesystem::path& recovery)
    : wxFrame(nullptr, wxID_ANY, wxString::FromUTF8(productName()), wxDefaultPosition, wxSize(1180, 780),
              wxDEFAULT_FRAME_STYLE, "MainEditor"),
      session_(recovery),
      runner_(displayState_, {[this] { commandsEnded(); }, [this] { finishClosing(); }}),
      context_{*this, session_, saver, runner_},
      recovered_(session_, *this, [this] { showRoutine(); }),
      status_(*this) {
    if (recovery == recoveryFolder()) session_.recovery().store().takeOver(formerRecoveryFolder());
    restorePlace(*this);  // first, so that everything in the window is laid out once
    layOut();
    session_.setStage(*stage_);
    session_.listen(*stage_);
    session_.listen(*this);
    quietWork_ = std::make_unique<QuietWork>(
        session_, left_->list(), [this] { return IsShown(); }, [this] { return runner_.running() == 0; });
    tools_ = std::make_unique<ToolButtons>(*toolbar_, context_.shapeTool);
    bindKeys();
    bindEvents();
    restoreToolbar(*toolbar_);
    Layout();
    DragAcceptFiles(true);
    optionsListener_ = std::make_unique<OptionsListener>([this] {
        quietWork_->makeThumbnailsAnew();
        showLeftPanel(*splitter_, *left_, *stage_, OptionsHolder().on("chkLeftPanelVisible"));
        if (toolbar_->filled()) applyOptions();
    });
    watchModalDialogs();
    refreshState();
}

TMainEditor::~TMainEditor() {
    if (pMainEditor == this) pMainEditor = nullptr;
}

void TMainEditor::bindEvents() {
    Bind(wxEVT_DROP_FILES, [this](wxDropFilesEvent& event) {
        std::vector<std::string> paths;
        paths.reserve(static_cast<size_t>(event.GetNumberOfFiles()));
        for (int i = 0; i < event.GetNumberOfFiles(); ++i) paths.push_back(event.GetFiles()[i].ToStdString(wxConvUTF8));
        CallAfter([this, paths] { openDropped(paths); });  // the source waits for the drop to end
    });
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
        if (!event.CanVeto()) {
            Hide();
            runner_.close();
            return;
        }
        event.Veto();
        if (runner_.running() == 0) leave(context_, false);
    });
    Bind(wxEVT_DPI_CHANGED, [this](wxDPIChangedEvent& event) {
        scaleChanged();
        event.Skip();
    });
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        OnSysColourChanged(event);  // tells the parts of the window, and gives a frame the colour of others
        coloursChanged();
    });
    Bind(wxEVT_SHOW, [this](wxShowEvent& event) {
        if (event.IsShown()) wakeTimers();
        event.Skip();
    });
    Bind(wxEVT_IDLE, [this](wxIdleEvent& event) {
        complete();
        session_.showDue();
        if (stateStale_) refreshState();
        if (mayTellOfMissingData(context_)) CallAfter([this] { tellOfMissingData(context_); });
        event.Skip();
    });
}

// --- keys ---------------------------------------------------------------------------------------------------------

void TMainEditor::bindKeys() {
    std::vector<wxAcceleratorEntry> keys;
    for (const MainCommand& command : mainCommands()) {
        if (command.keyCode == 0) continue;
        const int id = wxNewId();
        keys.emplace_back(command.keyFlags, command.keyCode, id);
        Bind(
            wxEVT_MENU, [this, &command](wxCommandEvent&) { run(command); }, id);
    }
    SetAcceleratorTable(wxAcceleratorTable(static_cast<int>(keys.size()), keys.data()));
    Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
        if (!keyOutsideCanvas(event)) event.Skip();
    });
}

/// F6 walks through the parts of the window. The keys of the canvas that no text or list has a use for work in all of
/// them; those that the canvas has taken itself do not come here.
bool TMainEditor::keyOutsideCanvas(wxKeyEvent& event) {
    const int key = event.GetKeyCode();
    if (key == WXK_F6) return focusNextPart(event.ShiftDown());
    if (canvas() == nullptr || left_->list().GetEditControl() != nullptr || canvas()->IsDescendant(FindFocus()))
        return false;
    const bool letter = (key >= 'A' && key <= 'Z') || (key >= '0' && key <= '9');
    const bool zoom = key == '+' || key == '-' || key == '=' || (key >= WXK_NUMPAD0 && key <= WXK_NUMPAD9) ||
                      key == WXK_NUMPAD_ADD || key == WXK_NUMPAD_SUBTRACT;
    const bool forCanvas = event.ControlDown() ? letter || zoom : event.AltDown() && key == WXK_BACK;
    return forCanvas && canvas()->FormKeyDown(event);
}

bool TMainEditor::focusNextPart(bool back) {
    wxWindow* const focus = FindFocus();
    wxWindow* const parts[] = {toolbar_, &left_->list(), &left_->labels(), canvas()};
    constexpr int count = 4;
    int at = 0;
    while (at < count && (parts[at] == nullptr || !parts[at]->IsDescendant(focus))) ++at;
    if (at == count) at = back ? 0 : count - 1;
    for (int step = 1; step <= count; ++step) {
        const int next = (at + (back ? count - step : step)) % count;
        if (parts[next] == nullptr || !parts[next]->IsShownOnScreen() || !parts[next]->IsEnabled()) continue;
        if (parts[next] == toolbar_) {
            toolbar_->takeFocus();
        } else if (parts[next] == canvas()) {
            canvas()->takeFocus(back);
        } else if (parts[next] == &left_->labels() && session_.current() == nullptr) {
            continue;
        } else {
            parts[next]->SetFocus();
        }
        return true;
    }
    return false;
}

// --- commands -----------------------------------------------------------------------------------------------------

TEditForm* TMainEditor::canvas() const { return stage_->canvas(); }

Captures TMainEditor::selectedCaptures() const { return left_->selected(); }

void TMainEditor::run(const MainCommand& command) {
    if (runner_.running() > 0 || !available(command.needs, session_)) return;
    complete();  // a dialog may keep the first quiet moment away
    execute(command.group, [this, &command] { perform(command, context_, selectedCaptures()); });
}

void TMainEditor::output(OutputCommand command, const Captures& captures) {
    if (captures.empty()) return;
    execute(CommandGroup::Output, [this, command, &captures] { command(context_, captures); });
}

/// The same for the user, who starts one command at a time.
void TMainEditor::outputHere(OutputCommand command, const Captures& captures) {
    if (runner_.running() > 0) return;
    complete();
    output(command, captures);
}

void TMainEditor::execute(CommandGroup group, const std::function<void()>& command) {
    runner_.run([this, group, &command] {
        // A step back or forth is one within what is being drawn. A host's command on a capture that is still to be
        // shown has nothing to do with what the user does meanwhile.
        TEditForm* const shown = canvas();
        if (shown != nullptr && !session_.due() && !shown->waits() && group != CommandGroup::History)
            shown->finishEditing();
        command();
    });
}

void TMainEditor::commandsEnded() {
    session_.showDue();
    session_.parkOthers();
    stateStale_ = true;
}

void TMainEditor::finishClosing() {
    session_.discardAll(true);
    storeState();
    Destroy();
}

void TMainEditor::btnLoadProjectClick() { openFromDialog(context_); }

bool TMainEditor::openFile(const std::string& path) { return openFiles(context_, {path}); }

void TMainEditor::openDropped(const std::vector<std::string>& paths) {
    if (runner_.running() > 0) return;
    openFiles(context_, paths);
    bringForward();
}

bool TMainEditor::closeSession() {
    // The icon's menu stays in reach while a command's dialog waits for an answer about its captures.
    if (runner_.running() == 0) return leave(context_, false);
    bringForward();
    return false;
}

void TMainEditor::prepareForSessionEnd(std::chrono::milliseconds budget) {
    session_.recovery().keepAll(budget);
    storeState();
    settings().save();
}

// --- what becomes of the session ----------------------------------------------------------------------------------

void TMainEditor::captureAdded(size_t /*place*/) { wakeTimers(); }

void TMainEditor::captureChanged(const CaptureDocument& /*capture*/, const DocumentChange& /*change*/) {
    stateStale_ = true;
    wakeTimers();
}

void TMainEditor::currentChanged() {
    tools_->follow(canvas());
    stateStale_ = true;
}

void TMainEditor::noRoomFor(const CaptureDocument& capture) {
    showError("There is not enough memory to show \"" + capture.info().name + "\".");
}

void TMainEditor::wakeTimers() {
    if (!toolbar_->filled()) return;
    if (IsShown()) toolbar_->wake();
    quietWork_->wake();
}

void TMainEditor::refreshState() {
    stateStale_ = false;
    toolbar_->update([this](CommandNeeds needs) { return available(needs, session_); });
    tools_->follow(canvas());
    const CaptureDocument* current = session_.current();
    left_->labels().enableAll(current != nullptr);
    const std::string product = productName();
    std::string title = product;
    if (current != nullptr) {
        const bool changed = current->modified() || session_.projectHasChanged();
        title = current->info().name + (changed ? " * - " : " - ") + product;
    }
    if (GetTitle() != wxText(title)) SetTitle(wxText(title));
    updateStatus();
}

void TMainEditor::updateStatus() { status_.show(session_, selectedCaptures().size(), tools_->hint()); }

// --- the window and the user --------------------------------------------------------------------------------------

void TMainEditor::applyDisplayState() {
    if (displayState_ == DisplayState::Away) {
        Hide();
    } else if (displayState_ == DisplayState::Shown) {
        showRoutine();
    }
}

void TMainEditor::showRoutine() {
    displayState_ = DisplayState::Shown;
    session_.showDue();
    refreshState();
    Show();
    if (canvas() != nullptr) canvas()->paintNow();  // before all else: the picture is what the user waits for
    bringForward();
    if (canvas() != nullptr && IsEnabled()) canvas()->SetFocus();
}

void TMainEditor::hiddenRoutine() { refreshState(); }

void TMainEditor::putAway() {
    displayState_ = DisplayState::Away;
    applyDisplayState();
    if (context_.program.hidden) context_.program.hidden();
}

void TMainEditor::storeState() { storePlace(*this, *toolbar_, *splitter_); }

void TMainEditor::bringForward() { bringWindowForward(*this); }

}  // namespace glimmer
