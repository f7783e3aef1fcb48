#pragma once

#include <cstdint>

namespace glimmer {

/// What is to happen with a capture; hosts send these numbers. Any other number does nothing more than Load.
enum class CaptureAction : uint32_t {
    Edit = 0,
    Save = 1,
    Copy = 2,
    Mail = 3,
    ExternalViewer = 4,
    Upload = 5,
    Load = 6,
    Print = 7,
    EncodeText = 8,
    EncodeImage = 9,
    SaveAutomatically = 10,
};

}  // namespace glimmer
