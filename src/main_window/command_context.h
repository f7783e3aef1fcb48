#pragma once

#include <functional>
#include <string>

#include "editor/canvas/edit_tool.h"
#include "editor/session/capture_session.h"

class wxFrame;
class wxWindow;

namespace glimmer {

class CommandRunner;
class TEditForm;
class TSaver;

using Captures = CaptureSession::Captures;

/// What commands ask of the window that they stand in.
class MainWindow {
public:
    virtual ~MainWindow() = default;
    [[nodiscard]] virtual wxFrame& frame() = 0;
    [[nodiscard]] virtual TEditForm* canvas() const = 0;  ///< of the current capture
    /// To the front and active, restored when minimised; only when the window is visible.
    virtual void bringForward() = 0;
    /// Away with its captures, until something brings it back.
    virtual void putAway() = 0;
    /// Keeps the window's place and options.
    virtual void storeState() = 0;
};

/// What lies above this folder; the start-up sets it. Without one the command does nothing.
struct ProgramCommands {
    std::function<void()> options;
    std::function<void()> hidden;  ///< after the window was put away by the user
    std::function<void(const std::string& url)> openPage;
    std::function<void(wxWindow& button)> newCapture;  ///< offers what can be captured, below the button
};

/// What the commands of the main window work on, and what they keep from one to the next.
struct CommandContext {
    MainWindow& window;
    CaptureSession& session;
    TSaver& saver;
    const CommandRunner& runner;
    ProgramCommands program{};
    EditTool shapeTool = EditTool::TextShapeRectangle;  ///< what the shape button stands for
    bool leaving = false;                               ///< the question about leaving is on the screen
    bool missingDataDue = false;  ///< a picture without the program's own data was opened, and nobody was told yet
};

using Command = void (*)(CommandContext&);
/// A command that brings captures somewhere. Which ones is its caller's to say.
using OutputCommand = void (*)(CommandContext&, const Captures&);

}  // namespace glimmer
