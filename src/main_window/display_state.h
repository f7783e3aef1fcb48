#pragma once

#include <cstdint>

namespace glimmer {

/// How the main editor window stands towards the user.
enum class DisplayState : uint8_t {
    Shown = 1,  ///< on the screen
    Held = 3,   ///< in the middle of a command of its own; captures leave the window alone
    Away = 4,   ///< put away with its captures until the user or a capture to edit brings it back
};

}  // namespace glimmer
