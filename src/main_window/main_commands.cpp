#include "main_window/main_commands.h"

#include <wx/accel.h>
#include <wx/defs.h>

#include "main_window/uMainEditor.h"

namespace glimmer {

namespace {

using Editor = TMainEditor;
using Group = CommandGroup;
using Needs = CommandNeeds;

constexpr int noKey = 0;

// Two tools say "Alt + 7" on purpose; the picture has the key, and the highlighter answers to Alt + 8, which no hint
// promises to another tool.
const MainCommand commands[] = {
    {"btnLoadProject", "Open", "Open Project or Image file (Ctrl + O)", "open", Group::Project, Needs::Nothing, false,
     wxACCEL_CTRL, 'O', &Editor::btnLoadProjectClick},
    {"btnSaveProject", "Save", "Save current Project (Ctrl + S)", "save-project", Group::Project, Needs::Capture, false,
     wxACCEL_CTRL, 'S', &Editor::btnSaveProjectClick},
    {"btnSaveProjectAs", "Save as", "Save Project as...", "save-project-as", Group::Project, Needs::Capture, false,
     noKey, noKey, &Editor::btnSaveProjectAsClick},

    {"btnUpload", "Upload",
     "Upload Screenshot to web server and get links on it for blogs, forums, etc.\rHotkey: Ctrl + F1", "upload",
     Group::Output, Needs::Capture, false, wxACCEL_CTRL, WXK_F1, &Editor::btnUploadClick},
    {"btnPublish", "Save", "Publish Screenshots (Disk or Web)\rHotkey: Ctrl + F2", "save", Group::Output,
     Needs::Capture, false, wxACCEL_CTRL, WXK_F2, &Editor::btnPublishClick},
    {"btnCopy", "Copy", "Copy Screenshots to Clipboard\rHotkey: Ctrl + F3", "copy", Group::Output, Needs::Capture,
     false, wxACCEL_CTRL, WXK_F3, &Editor::btnCopyClick},
    {"btnMail", "Mail", "E-Mail Screenshots\rHotkey: Ctrl + F4", "mail", Group::Output, Needs::Capture, false,
     wxACCEL_CTRL, WXK_F4, &Editor::btnMailClick},
    {"btnExternalViewer", "Launch", "Open Screenshots in external Editor\rHotkey: Ctrl + F5", "launch", Group::Output,
     Needs::Capture, false, wxACCEL_CTRL, WXK_F5, &Editor::btnExternalViewerClick},
    {"btnPrint", "Print", "Print Screenshot\rHotkey: Ctrl + P", "print", Group::Output, Needs::Capture, false,
     wxACCEL_CTRL, 'P', &Editor::btnPrintClick},

    {"tbtnUndo", "Undo", "Undo\rHotkey: Ctrl + Z", "undo", Group::History, Needs::Undo, false, wxACCEL_CTRL, 'Z',
     &Editor::tbtnUndoClick},
    {"tbtnRedo", "Redo", "Redo\rHotkey: Ctrl + Y", "redo", Group::History, Needs::Redo, false, wxACCEL_CTRL, 'Y',
     &Editor::tbtnRedoClick},

    {"btnPointer", "Select", "Area/Object Selection Tool\rHotkey: Alt + 1", "pointer", Group::Tools, Needs::Capture,
     true, wxACCEL_ALT, '1', &Editor::btnPointerClick},
    {"btnWndSelector", "Window", "Window Selection Tool\rHotkey: Alt + 2", "window-select", Group::Tools,
     Needs::Capture, true, wxACCEL_ALT, '2', &Editor::btnWndSelectorClick},
    {"btnTextShape", "Shape", "Text and Shape Tool\rHotkey: Alt + 3", "shape", Group::Tools, Needs::Capture, true,
     wxACCEL_ALT, '3', &Editor::btnTextShapeClick},
    {"btnTextPen", "Drawing", "Text and Freeform Drawing Tool\rHotkey: Alt + 4", "pen", Group::Tools, Needs::Capture,
     true, wxACCEL_ALT, '4', &Editor::btnTextPenClick},
    {"btnTextLine", "Pointer", "Text and Line Tool\rHotkey: Alt + 5", "callout", Group::Tools, Needs::Capture, true,
     wxACCEL_ALT, '5', &Editor::btnTextLineClick},
    {"btnText", "Text", "Text Tool\rHotkey: Alt + 6", "text", Group::Tools, Needs::Capture, true, wxACCEL_ALT, '6',
     &Editor::btnTextClick},
    {"btnImage", "Image", "Add Image\rHotkey: Alt + 7", "image", Group::Tools, Needs::Capture, false, wxACCEL_ALT, '7',
     &Editor::btnImageClick},
    {"btnRectHightlight", "Rect", "Rectangular Hightlight Tool\rHotkey: Alt + 7", "highlight", Group::Tools,
     Needs::Capture, true, wxACCEL_ALT, '8', &Editor::btnRectHightlightClick},
    {"btnLine", "Line", "Line Tool\rHotkey: Alt + 9", "line", Group::Tools, Needs::Capture, true, wxACCEL_ALT, '9',
     &Editor::btnLineClick},

    {"btnOptions", "Options", "Display Options", "options", Group::Program, Needs::Nothing, false, noKey, noKey,
     &Editor::btnOptionsClick},
    {"tbtnAbout", "About", "", "about", Group::Program, Needs::Nothing, false, noKey, noKey, &Editor::tbtnAboutClick},
    {"tbtnTweet", "Tweet", "Tweet about Vistrane", "tweet", Group::Program, Needs::Nothing, false, noKey, noKey,
     &Editor::tbtnTweetClick},
    {"tbtnVote", "Rate", "Please vote for Vistrane by leaving a 5-stars rating", "rate", Group::Program, Needs::Nothing,
     false, noKey, noKey, &Editor::tbtnVoteClick},

    {"btnFirefox", "Firefox", "Hide editor and go back to Firefox (you'll be able to open up this editor back)", "back",
     Group::Window, Needs::Host, false, noKey, noKey, &Editor::btnFirefoxClick},
    {"btnExit", " Exit", "Exit Editor", "exit", Group::Window, Needs::Nothing, false, noKey, noKey,
     &Editor::btnExitClick},
};

}  // namespace

std::span<const MainCommand> mainCommands() { return commands; }

}  // namespace glimmer
