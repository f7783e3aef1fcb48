#pragma once

#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/timer.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/bitmap.h"
#include "editor/canvas/canvas_place.h"
#include "editor/recovery/recovery.h"
#include "main_window/display_state.h"
#include "main_window/main_commands.h"
#include "output/places/output_folders.h"

namespace glimmer {

class CaptureDocument;
class CaptureList;
class SelectionPanel;
class TMainToolbar;
class TEditForm;
class OptionsListener;
class RecoveryKeeper;
class TextPainter;
class ThumbInWork;

/// The main editor window: the captures of the session and the commands on them. Made hidden by the controller.
///
/// It owns the captures. One of them, the current one, is shown on a canvas; the others give up their address space.
class TMainEditor : public wxFrame {
public:
    using Documents = std::vector<CaptureDocument*>;

    /// `recovery`: where open captures are kept against a crash.
    explicit TMainEditor(std::filesystem::path recovery = recoveryFolder());
    ~TMainEditor() override;

    /// Takes a capture into the list, makes it the only selected one, shows it and answers it. While the user is in the
    /// middle of something (a dialog, a menu, a drag) it comes on the canvas when that has ended; commands act on what
    /// is selected all the same.
    CaptureDocument& addEditor(std::unique_ptr<CaptureDocument> document);
    [[nodiscard]] size_t editorCount() const { return documents_.size(); }
    [[nodiscard]] CaptureDocument* currentEditor() const { return current_; }  ///< on the canvas, or nothing
    [[nodiscard]] Documents allEditors() const;                                ///< in list order
    [[nodiscard]] Documents selectedEditors() const;                           ///< in list order
    [[nodiscard]] TEditForm* canvas() const { return canvas_; }                ///< of the current capture

    [[nodiscard]] DisplayState displayState() const { return displayState_; }
    void setDisplayState(DisplayState state) { displayState_ = state; }
    /// Brings the window into its display state.
    void applyDisplayState();
    /// Shows the window in front, restored when it was minimised.
    void showRoutine();
    /// Brings the list up to date without showing or raising anything.
    void hiddenRoutine();
    /// To the front and active, restored when minimised; only when the window is visible.
    void bringForward();

    /// As a click on that button of the tool bar, for a host that asks for it. Does nothing when the command is of no
    /// use now.
    void click(std::string_view control);

    // The tool bar's commands; each works on the selected captures where it works on captures at all.
    void btnLoadProjectClick();
    void btnSaveProjectClick();
    void btnSaveProjectAsClick();
    void btnUploadClick();
    void btnPublishClick();
    void btnCopyClick();
    void btnMailClick();
    void btnExternalViewerClick();
    void btnPrintClick();
    void tbtnUndoClick();
    void tbtnRedoClick();
    void btnPointerClick();
    void btnWndSelectorClick();
    void btnTextShapeClick();
    void btnTextPenClick();
    void btnTextLineClick();
    void btnTextClick();
    void btnImageClick();
    void btnRectHightlightClick();
    void btnLineClick();
    void btnOptionsClick();
    void tbtnAboutClick();
    void tbtnTweetClick();
    void tbtnVoteClick();
    void btnFirefoxClick();
    void btnExitClick();

    /// Opens a picture or project file (UTF-8 path); whether at least one editor came of it. Says why not.
    bool openFile(const std::string& path);
    bool openFiles(const std::vector<std::string>& paths);
    /// Closes the session: asks for unsaved captures, then lets go of all captures and puts the window away. False when
    /// the user wants to stay.
    bool closeSession();
    /// Lets go of all captures without a question. What of them was kept against a crash goes too, unless `kept`:
    /// then those that the user has worked on are offered again at the next start.
    void discardAll(bool kept = false);
    /// The session may end at any moment: keeps all captures, within `budget` or so, and the window's settings. Asks
    /// nothing, closes nothing; work can go on.
    void prepareForSessionEnd(std::chrono::milliseconds budget);
    /// Once: offers the captures that an earlier run left behind when it crashed, in a message box or, where another
    /// capture has brought the window up, in a bar of the window.
    void offerRecovered(bool inBar);

    /// The commands that live above this folder; the start-up sets them. Without one the button does nothing.
    struct Commands {
        std::function<void(const Documents&)> upload;
        std::function<void()> options;
        std::function<void()> hidden;  ///< after the window was put away by the user
        std::function<void(const std::string& url)> openPage;
    };
    void setCommands(Commands commands) { commands_ = std::move(commands); }

private:
    // Layout (main_editor_layout.cpp)
    void layOut();
    void makeStatusBar();
    void setStatusWidths();
    void scaleChanged();
    void coloursChanged();
    void addShapeMenu();
    void nameForReaders();
    void complete();
    void applyOptions();
    void showLeftPanel(bool show);
    void showZoomMenu(const wxPoint& at);

    // Keys, place, state (uMainEditor.cpp)
    void bindKeys();
    bool keyOutsideCanvas(wxKeyEvent& event);
    bool focusNextPart(bool back);
    void run(const MainCommand& command);
    void execute(const MainCommand& command);
    void finishClosing();
    [[nodiscard]] bool available(CommandNeeds needs) const;
    static void bringDialogForward();
    void restorePlace();
    void restoreToolbar();
    void storeState();

    // The list of captures (main_editor_captures.cpp)
    [[nodiscard]] size_t placeOf(const CaptureDocument& document) const;
    void show(size_t place);
    void showDue();
    [[nodiscard]] bool mayChangeCanvas() const;
    bool putOnCanvas(CaptureDocument& document);
    void putBack();
    void followTool();
    void markShapeTool(EditTool tool);
    void unshow();
    void showInsteadOf(const std::vector<size_t>& places);
    CaptureDocument& addDocument(std::unique_ptr<CaptureDocument> document,
                                 std::optional<RecoveryStore::Entry> former = {});
    void removePlaces(std::vector<size_t> places, bool kept = false);
    void deleteCaptures(std::vector<size_t> places);
    void moveCapture(size_t from, size_t to);
    void renameCapture(size_t place, const wxString& name);
    void onLabel(std::string_view control);
    void showActionsMenu(const wxPoint& screen);
    void makeThumbnailsAnew();
    void updateThumbnails();
    bool beginThumbnail();
    void endThumbnail();
    void parkOthers(const CaptureDocument* also = nullptr);
    void refreshState();
    void updateStatus();
    [[nodiscard]] wxString toolInHand() const;
    void openDropped(const std::vector<std::string>& paths);

    // The recovery folder (main_editor_recovery.cpp)
    void wakeTimers();
    void startKeeping(std::filesystem::path folder);
    void offerInBar(const std::vector<RecoveryStore::Entry>& entries);
    void openRecovered(const std::vector<RecoveryStore::Entry>& entries);

    // Commands (main_editor_commands.cpp)
    void setTool(EditTool tool, const char* button);
    void afterOutput(const char* done);
    void openPage(const std::string& page);  ///< of the vendor's site
    bool leave(bool confirmed);
    bool confirmLeaving(bool confirmed);
    class Asked;
    [[nodiscard]] bool confirmUnsaved(const Documents& documents);
    bool saveProject(bool askForName);
    [[nodiscard]] bool mayTellOfMissingData() const;
    void tellOfMissingData();

    /// A capture and what the list knows of it.
    struct Entry {
        std::unique_ptr<CaptureDocument> document;
        int observer = 0;
        bool thumbnailStale = true;
        std::chrono::steady_clock::time_point changedAt{};
        CanvasPlace place;  ///< where the user was when it was on the canvas last
    };
    std::vector<Entry> documents_;
    std::unique_ptr<RecoveryKeeper> recovery_;
    wxTimer tmrRecovery_;
    bool recoveredOffered_ = false;
    CaptureDocument* current_ = nullptr;
    CaptureDocument* due_ = nullptr;  ///< comes on the canvas as soon as nothing stands on that any more
    TEditForm* canvas_ = nullptr;
    DisplayState displayState_ = DisplayState::Shown;
    std::string projectPath_;      ///< of the project that "Save" goes on with; empty: there is none
    bool projectChanged_ = false;  ///< captures came, went or moved since it was opened or saved
    Commands commands_;
    const char* toolButton_ = "btnPointer";
    EditTool shapeTool_;  ///< what the shape button's menu chose last
    bool stateStale_ = true;
    int opening_ = 0;              ///< files are being opened: the last one is shown, in the end
    int commandsRunning_ = 0;      ///< the window is not closed below a command; a host's may run inside another one
    bool leaving_ = false;         ///< the question about leaving is on the screen
    bool closing_ = false;         ///< it is closed when the last one ends
    bool missingDataDue_ = false;  ///< a picture without the program's own data was opened, and nobody was told yet

    TMainToolbar* toolbar_ = nullptr;
    wxWindow* leftPanel_ = nullptr;
    CaptureList* list_ = nullptr;
    SelectionPanel* labels_ = nullptr;
    wxPanel* canvasHost_ = nullptr;
    wxColour face_;  ///< what most of the window is painted with
    wxTimer tmrUpdateThumbnails_;
    std::unique_ptr<TextPainter> thumbnailText_;
    std::unique_ptr<ThumbInWork> thumbnailInWork_;
    std::unique_ptr<OptionsListener> optionsListener_;
};

/// The one main editor of the process; the controller makes it, the toolkit destroys it. None when there is none.
extern TMainEditor* pMainEditor;

}  // namespace glimmer
