#pragma once

#include "main_window/command_context.h"

namespace glimmer {

// The ways out of the program, for at least one capture each. The tool bar, the labels below the list, the menu of a
// capture and a host's action codes call the same function.

void uploadCaptures(CommandContext& context, const Captures& captures);
void saveCaptures(CommandContext& context, const Captures& captures);
void copyCaptures(CommandContext& context, const Captures& captures);
void mailCaptures(CommandContext& context, const Captures& captures);
void launchCaptures(CommandContext& context, const Captures& captures);  ///< in the external editor
void printCaptures(CommandContext& context, const Captures& captures);

}  // namespace glimmer
