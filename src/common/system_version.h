#pragma once

#include <cstdint>

namespace glimmer {

/// Number of the system's build (Windows 10 version 2004: 19041, Windows 11: 22000 and more), which GetVersionEx()
/// hides from programs whose manifest does not know the system. 0 when it cannot be had.
uint32_t systemBuild();

}  // namespace glimmer
