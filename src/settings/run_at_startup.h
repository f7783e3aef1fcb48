#pragma once

#include <string>

#include "common/result.h"

namespace glimmer {

/// Whether the system starts the program when this user signs in.
bool runsAtStartup();
/// Writes or removes the value "Glimmerpad" under the user's "Run" key; `program` is the full path of glimmerpad.exe.
Status setRunAtStartup(bool on, const std::string& program);

}  // namespace glimmer
