#pragma once

#include "main_window/command_context.h"

namespace glimmer {

/// Ends the session: asks for what is not saved, lets go of all captures and puts the window away. `confirmed`: the
/// user has said already that this is wanted, and with everything saved there is no question. False when the user
/// stays, or something else has to end first.
bool leave(CommandContext& context, bool confirmed);

}  // namespace glimmer
