#pragma once

namespace glimmer {

/// Sends remarks for a developer (see debug_channel.h) to the system's debug output, where debuggers and viewers show
/// them.
void connectDebugger();

}  // namespace glimmer
