#include "main_window/main_commands.h"

#include <wx/accel.h>
#include <wx/defs.h>

#include <algorithm>

#include "common/host_kind.h"
#include "main_window/output_commands.h"
#include "main_window/program_commands.h"
#include "main_window/project_commands.h"
#include "main_window/tool_commands.h"

namespace glimmer {

namespace {

using Group = CommandGroup;
using Needs = CommandNeeds;

constexpr int noKey = 0;

// Two tools say "Alt + 7" on purpose; the picture has the key, and the highlighter answers to Alt + 8, which no hint
// promises to another tool.
constexpr MainCommand commands[] = {
    {"btnNew", "New", "New Screenshot of a region, a window, the desktop...", "capture", Group::Project, Needs::Nothing,
     noKey, noKey, newCapture},
    {"btnLoadProject", "Open", "Open Project or Image file (Ctrl + O)", "open", Group::Project, Needs::Nothing,
     wxACCEL_CTRL, 'O', openFromDialog},
    {"btnSaveProject", "Save", "Save current Project (Ctrl + S)", "save-project", Group::Project, Needs::Capture,
     wxACCEL_CTRL, 'S', saveProject},
    {"btnSaveProjectAs", "Save as", "Save Project as...", "save-project-as", Group::Project, Needs::Capture, noKey,
     noKey, saveProjectAs},

    {"btnUpload", "Upload",
     "Upload Screenshot to web server and get links on it for blogs, forums, etc.\rHotkey: Ctrl + F1", "upload",
     Group::Output, Needs::Capture, wxACCEL_CTRL, WXK_F1, uploadCaptures},
    {"btnPublish", "Save", "Publish Screenshots (Disk or Web)\rHotkey: Ctrl + F2", "save", Group::Output,
     Needs::Capture, wxACCEL_CTRL, WXK_F2, saveCaptures},
    {"btnCopy", "Copy", "Copy Screenshots to Clipboard\rHotkey: Ctrl + F3", "copy", Group::Output, Needs::Capture,
     wxACCEL_CTRL, WXK_F3, copyCaptures},
    {"btnMail", "Mail", "E-Mail Screenshots\rHotkey: Ctrl + F4", "mail", Group::Output, Needs::Capture, wxACCEL_CTRL,
     WXK_F4, mailCaptures},
    {"btnExternalViewer", "Launch", "Open Screenshots in external Editor\rHotkey: Ctrl + F5", "launch", Group::Output,
     Needs::Capture, wxACCEL_CTRL, WXK_F5, launchCaptures},
    {"btnPrint", "Print", "Print Screenshot\rHotkey: Ctrl + P", "print", Group::Output, Needs::Capture, wxACCEL_CTRL,
     'P', printCaptures},

    // The keys of these two are the canvas's, which gets them from wherever the focus is.
    {"tbtnUndo", "Undo", "Undo\rHotkey: Ctrl + Z", "undo", Group::History, Needs::Undo, noKey, noKey, undoStep},
    {"tbtnRedo", "Redo", "Redo\rHotkey: Ctrl + Y", "redo", Group::History, Needs::Redo, noKey, noKey, redoStep},

    {"btnPointer", "Select", "Area/Object Selection Tool\rHotkey: Alt + 1", "pointer", Group::Tools, Needs::Capture,
     wxACCEL_ALT, '1', EditTool::Pointer},
    {"btnWndSelector", "Window", "Window Selection Tool\rHotkey: Alt + 2", "window-select", Group::Tools,
     Needs::Capture, wxACCEL_ALT, '2', EditTool::WindowSelector},
    {"btnTextShape", "Shape", "Text and Shape Tool\rHotkey: Alt + 3", "shape", Group::Tools, Needs::Capture,
     wxACCEL_ALT, '3', EditTool::TextShapeRectangle},
    {"btnTextPen", "Drawing", "Text and Freeform Drawing Tool\rHotkey: Alt + 4", "pen", Group::Tools, Needs::Capture,
     wxACCEL_ALT, '4', EditTool::TextPen},
    {"btnTextLine", "Pointer", "Text and Line Tool\rHotkey: Alt + 5", "callout", Group::Tools, Needs::Capture,
     wxACCEL_ALT, '5', EditTool::TextLine},
    {"btnText", "Text", "Text Tool\rHotkey: Alt + 6", "text", Group::Tools, Needs::Capture, wxACCEL_ALT, '6',
     EditTool::Text},
    {"btnImage", "Image", "Add Image\rHotkey: Alt + 7", "image", Group::Tools, Needs::Capture, wxACCEL_ALT, '7',
     addImage},
    {"btnRectHightlight", "Rect", "Rectangular Hightlight Tool\rHotkey: Alt + 7", "highlight", Group::Tools,
     Needs::Capture, wxACCEL_ALT, '8', EditTool::RectHighlight},
    {"btnLine", "Line", "Line Tool\rHotkey: Alt + 9", "line", Group::Tools, Needs::Capture, wxACCEL_ALT, '9',
     EditTool::Line},

    {"btnOptions", "Options", "Display Options", "options", Group::Program, Needs::Nothing, noKey, noKey, showOptions},
    {"tbtnAbout", "About", "", "about", Group::Program, Needs::Nothing, noKey, noKey, showAbout},
    {"tbtnTweet", "Tweet", "Tweet about Vistrane", "tweet", Group::Program, Needs::Nothing, noKey, noKey,
     openTweetPage},
    {"tbtnVote", "Rate", "Please vote for Vistrane by leaving a 5-stars rating", "rate", Group::Program, Needs::Nothing,
     noKey, noKey, openVotePage},

    {"btnFirefox", "Firefox", "Hide editor and go back to Firefox (you'll be able to open up this editor back)", "back",
     Group::Window, Needs::Host, noKey, noKey, hideEditor},
    {"btnExit", " Exit", "Exit Editor", "exit", Group::Window, Needs::Nothing, noKey, noKey, exitEditor},
};

}  // namespace

std::span<const MainCommand> mainCommands() { return commands; }

const MainCommand& commandOf(EditTool tool) {
    const auto takes = [tool](const MainCommand& command) {
        const auto* taken = std::get_if<EditTool>(&command.act);
        return taken != nullptr && (*taken == tool || (isShapeTool(*taken) && isShapeTool(tool)));
    };
    return *std::find_if(std::begin(commands), std::end(commands), takes);
}

bool available(CommandNeeds needs, const CaptureSession& session) {
    const CaptureDocument* current = session.current();
    switch (needs) {
        case CommandNeeds::Nothing:
            return true;
        case CommandNeeds::Capture:
            return current != nullptr;
        case CommandNeeds::Undo:
            return current != nullptr && current->history().canUndo();
        case CommandNeeds::Redo:
            return current != nullptr && current->history().canRedo();
        case CommandNeeds::Host:
            return !isStandalone();
    }
    return false;
}

void perform(const MainCommand& command, CommandContext& context, const Captures& selected) {
    if (const Command* act = std::get_if<Command>(&command.act)) (*act)(context);
    if (const OutputCommand* output = std::get_if<OutputCommand>(&command.act)) (*output)(context, selected);
    if (const EditTool* tool = std::get_if<EditTool>(&command.act)) takeTool(context, *tool);
}

}  // namespace glimmer
