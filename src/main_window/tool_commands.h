#pragma once

#include "main_window/command_context.h"

namespace glimmer {

// On the canvas; only while there is one.

/// The tool that the user works with from now on. For the shape tool it is the shape chosen last.
void takeTool(CommandContext& context, EditTool tool);
void undoStep(CommandContext& context);
void redoStep(CommandContext& context);
/// Puts a picture of the user's choice on the capture.
void addImage(CommandContext& context);

/// Whether the shape button stands for that tool.
bool isShapeTool(EditTool tool);

}  // namespace glimmer
