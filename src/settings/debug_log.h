#pragma once

namespace glimmer {

/// From now on remarks for a developer (debug_channel.h) go where they went before and, while the option "Debug mode"
/// is on, also to a file beside the settings file with the extension ".log"; only then are there details
/// (debugDetail()): a line each, with the local time. A file that has grown beyond a mebibyte is begun anew. That it
/// cannot be written troubles nobody.
void connectDebugLog();

}  // namespace glimmer
