#pragma once

namespace glimmer {

/// Brings a window of this thread (HWND) in front of all others, active and with the keyboard. Where the system
/// refuses, because another program is in front and has not allowed it, the window comes above the others without the
/// keyboard and calls for attention in the task bar. It does not stay on top.
void takeForeground(void* window);

}  // namespace glimmer
