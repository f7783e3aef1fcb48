#pragma once

#include <cstdint>
#include <span>

namespace glimmer {

class TMainEditor;

/// Buttons of a group stand together; a wider gap separates groups.
enum class CommandGroup : uint8_t { Project, Output, History, Tools, Program, Window };

/// When a command can be used.
enum class CommandNeeds : uint8_t { Nothing, Capture, Undo, Redo, Host };

/// One command of the main editor: a tool bar button, its key and what it does.
struct MainCommand {
    const char* control;  ///< name of the button
    const char* caption;
    const char* hint;  ///< lines end in a carriage return
    const char* icon;
    CommandGroup group;
    CommandNeeds needs;
    bool radio;    ///< one of the editing tools, of which one is down
    int keyFlags;  ///< wxACCEL_...; with keyCode 0 there is no key
    int keyCode;
    void (TMainEditor::*handler)();
};

/// All commands in the order of the tool bar.
std::span<const MainCommand> mainCommands();

}  // namespace glimmer
