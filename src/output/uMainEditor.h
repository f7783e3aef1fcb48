#pragma once

#include <wx/frame.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/bitmap.h"

namespace glimmer {

class CaptureDocument;

/// How the main editor window stands towards the user.
enum class DisplayState : uint8_t {
    Shown = 1,  ///< on the screen
    Held = 3,   ///< in the middle of a command of its own; captures leave the window alone
    Away = 4,   ///< put away with its captures until the user or a capture to edit brings it back
};

/// The main editor window: the captures of the session and the commands on them. Made hidden by the controller.
class TMainEditor : public wxFrame {
public:
    using Documents = std::vector<CaptureDocument*>;

    TMainEditor();
    ~TMainEditor() override;

    /// Takes a capture into the list, makes it the current and only selected one and answers it.
    CaptureDocument& addEditor(std::unique_ptr<CaptureDocument> document);
    [[nodiscard]] size_t editorCount() const;
    [[nodiscard]] CaptureDocument* currentEditor() const;  ///< nothing while the list is empty
    [[nodiscard]] Documents allEditors() const;            ///< in list order
    [[nodiscard]] Documents selectedEditors() const;       ///< in list order

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

    void btnUploadClick();
    void btnPublishClick();
    void btnCopyClick();
    void btnMailClick();
    void btnExternalViewerClick();
    void btnPrintClick();
    void btnLoadProjectClick();
    void btnSaveProjectClick();
    void btnSaveProjectAsClick();

    /// Opens a picture or project file (UTF-8 path); whether at least one editor came of it. Says why not.
    bool openFile(const std::string& path);

    /// The commands that live above this folder; the start-up sets them. Without one the button does nothing.
    struct Commands {
        std::function<void(const Documents&)> upload;
        std::function<void()> options;
        std::function<void()> hidden;  ///< after the window was put away by the user
    };
    void setCommands(Commands commands) { commands_ = std::move(commands); }

private:
    std::vector<std::unique_ptr<CaptureDocument>> documents_;
    CaptureDocument* current_ = nullptr;
    DisplayState displayState_ = DisplayState::Shown;
    std::string projectPath_;
    Commands commands_;
};

/// The one main editor of the process; the controller makes it, the toolkit destroys it. None when there is none.
extern TMainEditor* pMainEditor;

}  // namespace glimmer
