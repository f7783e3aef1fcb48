#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "common/geometry.h"

namespace glimmer {

/// Least free physical memory, in KiB, with which a capture is taken.
constexpr uint64_t requiredMemoryKiB = 20000;

/// The warning of the memory guard, or nothing when that much free physical memory will do.
std::optional<std::string> lowMemoryWarning(uint64_t availableBytes);
/// What the user reads after it.
std::string captureImpossibleText();
/// What the user reads when there is room for the capture, but not for working on it.
std::string noRoomForEditorText();

/// Size of the bitmap that is tried before an editor is made: as large as the picture and the screen, whichever is
/// larger, side by side.
Size probeSize(Size picture, Size screen);

}  // namespace glimmer
