#pragma once

#include "main_window/command_context.h"

namespace glimmer {

/// Offers what can be captured.
void newCapture(CommandContext& context);
void showOptions(CommandContext& context);
void showAbout(CommandContext& context);
void openTweetPage(CommandContext& context);
void openVotePage(CommandContext& context);
/// Back to the host; the captures stay.
void hideEditor(CommandContext& context);
void exitEditor(CommandContext& context);

}  // namespace glimmer
