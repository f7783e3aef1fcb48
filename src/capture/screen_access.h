#pragma once

#include <string>

namespace glimmer {

/// Why a picture of the screen shows nothing at this moment, as a sentence for a person: the remote session is
/// disconnected, or the system shows a desktop that no program can read (locked, signing in, asking for permission).
/// Empty when nothing of that is so.
std::string whyScreenIsDark();

}  // namespace glimmer
