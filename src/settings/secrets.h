#pragma once

#include <string>
#include <string_view>

#include "settings/cached_mem_ini_file.h"

namespace glimmer {

/// Stores a password or token so that only this user on this machine reads it back; never in clear. Empty text
/// removes the key. Fails when the system cannot protect it; nothing is stored then.
Status writeSecret(TCachedMemIniFile& store, std::string_view section, std::string_view key, std::string_view secret);
/// What writeSecret() stored; empty when there is nothing, or nothing that this user can read.
std::string readSecret(const TCachedMemIniFile& store, std::string_view section, std::string_view key);

}  // namespace glimmer
