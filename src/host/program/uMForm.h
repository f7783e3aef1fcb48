#pragma once

#include <wx/frame.h>

#include <memory>
#include <optional>
#include <string>

#include "host/program/uProgram.h"

namespace glimmer {

class HotKeys;
class PresetKeys;
class TrayIcon;

/// The standalone program's main form: never shown, it owns the icon in the notification area, answers other
/// instances' messages and the global hot keys.
class TMForm : public wxFrame, public ProgramHome {
public:
    TMForm();
    ~TMForm() override;

    /// Begins the work as soon as the message loop runs: opens `file`, or shows the main editor window; after that
    /// come the icon, the hot keys and what is to be told. Without a file it stays in the notification area when
    /// `inTray` is set.
    void start(const std::optional<std::string>& file, bool inTray = false);

    HotKeys* hotKeys() override { return hotKeys_.get(); }
    /// Tells once where the program is now.
    void editorHidden() override;

    // Commands of the icon's menu.
    void mnuContinueClick();
    void mnuNewCaptureClick();
    void mnuOpenClick();
    void mnuOptionsClick();
    void mnuExitClick();

protected:
    /// The window-message hook: messages of other instances, hot keys.
    WXLRESULT MSWWindowProc(WXUINT message, WXWPARAM wParam, WXLPARAM lParam) override;

private:
    /// Another instance was started: opens the file that it hands over, if any, and comes back.
    void restored();
    void takePlace();
    void systemChanged();
    void showNotices();
    void tellOfPrintScreen();
    void askForContinueKey();

    bool exiting_ = false;       ///< the icon's "Exit" was chosen
    bool recoveredDue_ = false;  ///< what an earlier run left behind is offered with the first window
    std::unique_ptr<TrayIcon> trayIcon_;
    std::unique_ptr<HotKeys> hotKeys_;
    std::unique_ptr<PresetKeys> presetKeys_;
};

/// The one main form; null while the program does not run standalone.
extern TMForm* MForm;

}  // namespace glimmer
