#pragma once

#include <cstdint>

namespace glimmer {

/// Counts the seconds down in a small window, in a corner of the monitor that the pointer is on, which takes neither
/// the keyboard nor the place in front: menus stay open. A click on it calls it off. Dispatches messages meanwhile.
/// Whether the time is over and the window gone from the screen; false when it was called off, the program is to end,
/// or one is counting already.
bool countDown(int32_t seconds);

}  // namespace glimmer
