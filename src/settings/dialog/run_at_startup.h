#pragma once

#include <string>

#include "common/result.h"

namespace glimmer {

/// Whether the system starts the program when this user signs in: there is an entry, and the user has not switched it
/// off in the system's own list.
bool runsAtStartup();
/// Writes or removes the value "Glimmerpad" under the user's "Run" key, with "-TRAY", so that no window comes up;
/// `program` is the full path of glimmerpad.exe.
Status setRunAtStartup(bool on, const std::string& program);
/// Brings an entry that an earlier version wrote, without "-TRAY", up to date. For the start of the program.
void renewRunAtStartup(const std::string& program);

}  // namespace glimmer
