#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace glimmer {

class CaptureDocument;

/// How a capture is saved; the values are those of the capture actions' description.
enum class SaveMode : uint8_t {
    Interactive = 5,  ///< the save dialog asks for name and format
    Automatic = 7,    ///< PNG under the default name in the folder used last, without a question
};

/// Turns captures into output. Says itself what goes wrong.
class TSaver {
public:
    /// The file written, or nothing when the user gave up or it failed.
    std::optional<std::filesystem::path> savePicture(CaptureDocument& document, SaveMode mode);
};

}  // namespace glimmer
