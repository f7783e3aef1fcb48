// The main editor window: its keys and commands, its place on the screen, its state towards the user.

#include "main_window/uMainEditor.h"

#include <wx/accel.h>
#include <wx/dialog.h>
#include <wx/gdicmn.h>
#include <wx/settings.h>
#include <wx/splitter.h>

#include <windows.h>

#include <new>
#include <utility>

#include "common/foreground.h"
#include "common/host_kind.h"
#include "common/inside_modal.h"
#include "common/modal_scope.h"
#include "editor/canvas/edit_tool.h"
#include "editor/document/document.h"
#include "editor/labels/rich_text_painter.h"
#include "editor/recovery/recovery_keeper.h"
#include "editor/window/uEditor.h"
#include "main_window/capture_list.h"
#include "main_window/main_toolbar.h"
#include "main_window/selection_panel.h"
#include "main_window/thumb_creator.h"
#include "settings/form_store.h"
#include "settings/message_box.h"
#include "settings/options.h"
#include "settings/settings.h"

namespace glimmer {

TMainEditor* pMainEditor = nullptr;

namespace {

const wxSize standardSize(1180, 780);  // in device-independent pixels
constexpr const char* section = "MainEditor";

}  // namespace

TMainEditor::TMainEditor(std::filesystem::path recovery)
    : wxFrame(nullptr, wxID_ANY, wxString::FromUTF8(productName()), wxDefaultPosition, standardSize,
              wxDEFAULT_FRAME_STYLE, "MainEditor"),
      shapeTool_(EditTool::TextShapeRectangle),
      tmrUpdateThumbnails_(this),
      thumbnailText_(std::make_unique<RichTextPainter>()) {
    SetBackgroundColour(face_ = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
    restorePlace();  // first, so that everything in the window is laid out once
    layOut();
    bindKeys();
    restoreToolbar();
    Layout();
    DragAcceptFiles(true);
    Bind(wxEVT_DROP_FILES, [this](wxDropFilesEvent& event) {
        std::vector<std::string> paths;
        paths.reserve(static_cast<size_t>(event.GetNumberOfFiles()));
        for (int i = 0; i < event.GetNumberOfFiles(); ++i) paths.push_back(event.GetFiles()[i].ToStdString(wxConvUTF8));
        CallAfter([this, paths] { openDropped(paths); });  // the source waits for the drop to end
    });
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
        if (!event.CanVeto()) {
            Hide();
            // Below a command that waits for a dialog, its captures are still needed.
            closing_ = true;
            if (commandsRunning_ == 0) finishClosing();
            return;
        }
        event.Veto();
        if (commandsRunning_ == 0) btnExitClick();
    });
    Bind(wxEVT_DPI_CHANGED, [this](wxDPIChangedEvent& event) {
        scaleChanged();
        event.Skip();
    });
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        OnSysColourChanged(event);  // tells the parts of the window, and gives a frame the colour of others
        coloursChanged();
    });
    Bind(wxEVT_TIMER, [this](wxTimerEvent&) {
        showDue();
        updateThumbnails();
        if (!IsShown()) tmrUpdateThumbnails_.Stop();
    });
    Bind(wxEVT_SHOW, [this](wxShowEvent& event) {
        if (event.IsShown()) wakeTimers();
        event.Skip();
    });
    Bind(wxEVT_IDLE, [this](wxIdleEvent& event) {
        complete();
        showDue();
        if (stateStale_) refreshState();
        if (mayTellOfMissingData()) CallAfter([this] { tellOfMissingData(); });
        event.Skip();
    });
    optionsListener_ = std::make_unique<OptionsListener>([this] {
        makeThumbnailsAnew();
        showLeftPanel(OptionsHolder().on("chkLeftPanelVisible"));
        if (toolbar_->filled()) applyOptions();
    });
    watchModalDialogs();
    startKeeping(std::move(recovery));
    refreshState();
}

TMainEditor::~TMainEditor() {
    for (const Entry& entry : documents_) recovery_->leave(*entry.document);
    if (pMainEditor == this) pMainEditor = nullptr;
}

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
    if (canvas_ == nullptr || list_->GetEditControl() != nullptr || canvas_->IsDescendant(FindFocus())) return false;
    const bool letter = (key >= 'A' && key <= 'Z') || (key >= '0' && key <= '9');
    const bool zoom = key == '+' || key == '-' || key == '=' || (key >= WXK_NUMPAD0 && key <= WXK_NUMPAD9) ||
                      key == WXK_NUMPAD_ADD || key == WXK_NUMPAD_SUBTRACT;
    const bool forCanvas = event.ControlDown() ? letter || zoom : event.AltDown() && key == WXK_BACK;
    return forCanvas && canvas_->FormKeyDown(event);
}

bool TMainEditor::focusNextPart(bool back) {
    wxWindow* const focus = FindFocus();
    wxWindow* const parts[] = {toolbar_, list_, labels_, canvas_};
    constexpr int count = 4;
    int at = 0;
    while (at < count && (parts[at] == nullptr || !parts[at]->IsDescendant(focus))) ++at;
    if (at == count) at = back ? 0 : count - 1;
    for (int step = 1; step <= count; ++step) {
        const int next = (at + (back ? count - step : step)) % count;
        if (parts[next] == nullptr || !parts[next]->IsShownOnScreen() || !parts[next]->IsEnabled()) continue;
        if (parts[next] == toolbar_) {
            toolbar_->takeFocus();
        } else if (parts[next] == canvas_) {
            canvas_->takeFocus(back);
        } else if (parts[next] == labels_ && current_ == nullptr) {
            continue;
        } else {
            parts[next]->SetFocus();
        }
        return true;
    }
    return false;
}

void TMainEditor::click(std::string_view control) {
    for (const MainCommand& command : mainCommands())
        if (control == command.control && available(command.needs)) execute(command);
}

void TMainEditor::run(const MainCommand& command) {
    if (commandsRunning_ > 0 || !available(command.needs)) return;
    complete();  // a dialog may keep the first quiet moment away
    execute(command);
}

void TMainEditor::execute(const MainCommand& command) {
    ++commandsRunning_;
    const DisplayState before = std::exchange(displayState_, DisplayState::Held);
    // A step back or forth is one within what is being drawn. A host's command on a capture that is still to be shown
    // has nothing to do with what the user does meanwhile.
    if (canvas_ != nullptr && due_ == nullptr && !canvas_->waits() && command.group != CommandGroup::History)
        canvas_->finishEditing();
    try {
        (this->*command.handler)();
    } catch (const std::bad_alloc&) {
        showError("There is not enough memory for this.");
    } catch (const std::exception& failure) {
        showError(failure.what());
    }
    if (displayState_ == DisplayState::Held) displayState_ = before;
    if (--commandsRunning_ > 0) return;
    if (closing_) {
        finishClosing();
        return;
    }
    showDue();
    parkOthers();
    stateStale_ = true;
}

void TMainEditor::finishClosing() {
    discardAll(true);
    storeState();
    Destroy();
}

bool TMainEditor::available(CommandNeeds needs) const {
    switch (needs) {
        case CommandNeeds::Nothing:
            return true;
        case CommandNeeds::Capture:
            return current_ != nullptr;
        case CommandNeeds::Undo:
            return current_ != nullptr && current_->history().canUndo();
        case CommandNeeds::Redo:
            return current_ != nullptr && current_->history().canRedo();
        case CommandNeeds::Host:
            return !isStandalone();
    }
    return false;
}

void TMainEditor::restorePlace() {
    SetMinSize(FromDIP(wxSize(480, 360)));
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

void TMainEditor::applyDisplayState() {
    if (displayState_ == DisplayState::Away) {
        Hide();
    } else if (displayState_ == DisplayState::Shown) {
        showRoutine();
    }
}

void TMainEditor::showRoutine() {
    displayState_ = DisplayState::Shown;
    showDue();
    refreshState();
    Show();
    if (canvas_ != nullptr) canvas_->paintNow();  // before all else: the picture is what the user waits for
    bringForward();
    if (canvas_ != nullptr && IsEnabled()) canvas_->SetFocus();
}

void TMainEditor::hiddenRoutine() { refreshState(); }

/// A dialog waits for an answer: in front of it the window would only look dead.
void TMainEditor::bringDialogForward() {
    for (wxWindow* top : wxTopLevelWindows) {
        auto* dialog = dynamic_cast<wxDialog*>(top);
        if (dialog != nullptr && dialog->IsShown() && dialog->IsModal() && dialog->IsEnabled())
            takeForeground(dialog->GetHWND());
    }
    const std::vector<void*> ofSystem = ModalScope::windows();
    if (!ofSystem.empty()) takeForeground(ofSystem.front());
}

void TMainEditor::bringForward() {
    if (!IsShown()) return;
    const auto window = static_cast<HWND>(GetHWND());
    if (IsIconized()) ShowWindow(window, SW_RESTORE);
    if (IsWindowEnabled(window) == FALSE) return bringDialogForward();
    takeForeground(window);
}

}  // namespace glimmer
