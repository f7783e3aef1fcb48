#include "capture/memory_guard.h"

#include <algorithm>

namespace glimmer {

std::optional<std::string> lowMemoryWarning(uint64_t availableBytes) {
    const uint64_t availableKiB = availableBytes >> 10U;
    if (availableKiB >= requiredMemoryKiB) return std::nullopt;
    return "System works at low memory.\nYou need at least " + std::to_string(requiredMemoryKiB / 1024) +
           " MB, but you have only " + std::to_string(availableKiB / 1024) + " MB.\nTry minimizing some applications.";
}

std::string captureImpossibleText() { return "System works at low memory.\nIt`s impossible to make more screenshots."; }

std::string noRoomForEditorText() { return "There is not enough memory to open this screenshot in the editor."; }

Size probeSize(Size picture, Size screen) {
    return {std::max(picture.width, screen.width), std::max(picture.height, screen.height)};
}

}  // namespace glimmer
