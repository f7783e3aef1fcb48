#pragma once

#include <string>

namespace glimmer {

/// Full path of this process's settings file. Empty until the library's start-up has chosen it; the settings then
/// live in memory only.
const std::string& settingsPath();
/// Set by start-up code. The shared store (settings.h) is written back and opened anew at its next use.
void setSettingsPath(std::string path);

}  // namespace glimmer
