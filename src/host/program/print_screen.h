#pragma once

#include <cstdint>

namespace glimmer {

/// Whether the system opens its own screen capture at Print Screen alone, as the user's setting says; without the
/// setting the version decides. No other program gets the key then, or both act on it.
bool systemKeepsPrintScreen();

/// Whether a shortcut value (hot_key.h) is the key that this is about.
bool isPlainPrintScreen(int32_t shortcut);

/// Opens the system's page with that setting. It is the user's to change.
void openPrintScreenSetting();

}  // namespace glimmer
