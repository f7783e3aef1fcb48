#pragma once

#include <string>
#include <vector>

#include "main_window/command_context.h"

namespace glimmer {

void openFromDialog(CommandContext& context);
void saveProject(CommandContext& context);
void saveProjectAs(CommandContext& context);

/// Opens pictures and projects (UTF-8 paths); whether at least one capture came of them. What cannot be opened is told
/// at the end, in one message.
bool openFiles(CommandContext& context, const std::vector<std::string>& paths);
/// Saves all captures as the session's project; whether that was done. The name is asked for when there is none yet, or
/// with `ask`.
bool storeProject(CommandContext& context, bool ask);

/// Whether the notice about pictures without the program's own data is due, and no question is open: it is of no moment
/// for what the user sees.
bool mayTellOfMissingData(CommandContext& context);
void tellOfMissingData(CommandContext& context);

}  // namespace glimmer
