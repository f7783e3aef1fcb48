#pragma once

#include <wx/frame.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "editor/session/capture_session.h"
#include "main_window/command_runner.h"
#include "main_window/main_commands.h"
#include "main_window/recovered_offer.h"
#include "main_window/status_line.h"

class wxSplitterWindow;

namespace glimmer {

class CanvasStage;
class CapturePanel;
class OptionsListener;
class QuietWork;
class TMainToolbar;
class ToolButtons;

/// The main editor window: a session of captures in a list, the current one on a canvas, the commands on them in a tool
/// bar. Made hidden by the controller.
///
/// The sources: uMainEditor.cpp (commands, keys, state towards the user), uMainEditor_layout.cpp (its parts, their
/// place). What the commands do is in the command files.
class TMainEditor : public wxFrame, private MainWindow, private SessionListener {
public:
    /// The saver outlives the window. `recovery`: where open captures are kept against a crash.
    TMainEditor(TSaver& saver, const std::filesystem::path& recovery);
    ~TMainEditor() override;

    [[nodiscard]] CaptureSession& session() { return session_; }
    /// In list order; the current one when none is.
    [[nodiscard]] Captures selectedCaptures() const;
    [[nodiscard]] TEditForm* canvas() const override;

    [[nodiscard]] DisplayState displayState() const { return displayState_; }
    void setDisplayState(DisplayState state) { displayState_ = state; }
    /// Brings the window into its display state.
    void applyDisplayState();
    /// Shows the window in front, restored when it was minimised.
    void showRoutine();
    /// Brings the list up to date without showing or raising anything.
    void hiddenRoutine();
    void bringForward() override;

    /// As a press of its button: does nothing while another command runs, or when it is of no use now.
    void run(const MainCommand& command);
    /// For a host: an output command on these captures, also in the middle of another command.
    void output(OutputCommand command, const Captures& captures);

    /// The open dialog, and what is chosen in it.
    void btnLoadProjectClick();
    /// Opens a picture or project file (UTF-8 path); whether at least one capture came of it. Says why not.
    bool openFile(const std::string& path);
    /// Closes the session: asks for unsaved captures, then lets go of all captures and puts the window away. False when
    /// the user wants to stay.
    bool closeSession();
    /// The session may end at any moment: keeps all captures, within `budget` or so, and the window's settings. Asks
    /// nothing, closes nothing; work can go on.
    void prepareForSessionEnd(std::chrono::milliseconds budget);
    /// Once: offers the captures that an earlier run left behind when it crashed, in a message box or, where another
    /// capture has brought the window up, in a bar of the window.
    void offerRecovered(bool inBar) { recovered_.make(inBar); }

    using Commands = ProgramCommands;
    void setCommands(Commands commands) { context_.program = std::move(commands); }

private:
    // MainWindow
    [[nodiscard]] wxFrame& frame() override { return *this; }
    void putAway() override;
    void storeState() override;

    // SessionListener; the list hears for itself.
    void captureAdded(size_t place) override;
    void captureChanged(const CaptureDocument& capture, const DocumentChange& change) override;
    void currentChanged() override;
    void currentStays() override { stateStale_ = true; }
    void noRoomFor(const CaptureDocument& capture) override;
    void projectChanged() override { stateStale_ = true; }

    // Layout (uMainEditor_layout.cpp)
    void layOut();
    void complete();
    void applyOptions();
    void scaleChanged();
    void coloursChanged();

    // Commands, keys, state (uMainEditor.cpp)
    void bindEvents();
    void bindKeys();
    bool keyOutsideCanvas(wxKeyEvent& event);
    bool focusNextPart(bool back);
    void execute(CommandGroup group, const std::function<void()>& command);
    void outputHere(OutputCommand command, const Captures& captures);
    void commandsEnded();
    void finishClosing();
    void openDropped(const std::vector<std::string>& paths);
    void wakeTimers();
    void refreshState();
    void updateStatus();

    DisplayState displayState_ = DisplayState::Shown;
    CaptureSession session_;
    CommandRunner runner_;
    CommandContext context_;
    RecoveredOffer recovered_;
    StatusLine status_;
    bool stateStale_ = true;

    wxColour face_;  ///< what most of the window is painted with
    TMainToolbar* toolbar_ = nullptr;
    wxSplitterWindow* splitter_ = nullptr;
    CapturePanel* left_ = nullptr;
    CanvasStage* stage_ = nullptr;
    std::unique_ptr<ToolButtons> tools_;
    std::unique_ptr<QuietWork> quietWork_;
    std::unique_ptr<OptionsListener> optionsListener_;
};

/// The one main editor of the process; the controller makes it, the toolkit destroys it. None when there is none.
extern TMainEditor* pMainEditor;

}  // namespace glimmer
