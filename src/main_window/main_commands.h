#pragma once

#include <cstdint>
#include <span>
#include <variant>

#include "main_window/command_context.h"

namespace glimmer {

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
    int keyFlags;  ///< wxACCEL_...; with keyCode 0 there is no key, or the canvas has it
    int keyCode;
    /// A command, one for captures (from here the selected ones), or an editing tool, of which one is taken.
    std::variant<Command, OutputCommand, EditTool> act;

    [[nodiscard]] bool isTool() const { return std::holds_alternative<EditTool>(act); }
};

/// All commands in the order of the tool bar.
std::span<const MainCommand> mainCommands();
/// The one that takes this tool.
const MainCommand& commandOf(EditTool tool);

/// Whether what it needs is there.
bool available(CommandNeeds needs, const CaptureSession& session);
/// Does it. `selected` is what an output command acts on.
void perform(const MainCommand& command, CommandContext& context, const Captures& selected);

}  // namespace glimmer
