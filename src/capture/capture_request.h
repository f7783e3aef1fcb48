#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/result.h"

// What a capture of the screen is asked to be: by a key, a menu, a command line.

namespace glimmer {

enum class CaptureKind : uint8_t {
    Region,   ///< what the user chooses on the frozen screen: an area, a window, a part of one
    Window,   ///< the window in front
    Client,   ///< what is inside of its frame
    Monitor,  ///< the one that the pointer is on
    Desktop,  ///< all monitors
    Last,     ///< the area that was taken last, again
};

struct CaptureRequest {
    static constexpr int32_t mostSeconds = 600;

    CaptureKind kind = CaptureKind::Region;
    int32_t delay = 0;   ///< seconds before the screen is taken
    int32_t action = 0;  ///< capture code of what follows
    std::string file{};  ///< where the picture is written first; empty: nowhere

    bool operator==(const CaptureRequest&) const = default;
};

/// How a capture that was asked for ended; the exit codes of the program.
enum class CaptureOutcome : uint8_t {
    Done = 0,
    Failed = 1,  ///< the user was told why
    Wrong = 2,   ///< the command line cannot be understood
    Left = 3,    ///< the user did not want it after all
};
inline constexpr int captureOutcomes = 4;

/// "region", "window", ... as in command lines and settings.
std::string_view captureKindName(CaptureKind kind);
/// In any case; nothing for other words.
std::optional<CaptureKind> captureKindOf(std::string_view name);

/// The arguments "-CAPTURE KIND [-DELAY SECONDS] [-ACTION CODE] [-FILE PATH]" in any case, the first one first. Nothing
/// when they ask for no capture; a failure with a sentence when they ask wrongly. With a file and no action the picture
/// is only written; otherwise the standard action is the editor.
std::optional<Result<CaptureRequest>> readCaptureArguments(const std::vector<std::string>& arguments);
/// The arguments that ask for it.
std::vector<std::string> captureArguments(const CaptureRequest& request);

/// A key of its own for a capture that is always the same.
struct CapturePreset {
    int32_t hotKey = 0;  ///< shortcut value (hot_key.h); 0: none, the menus have it all the same
    CaptureRequest request;

    bool operator==(const CapturePreset&) const = default;
};
/// The list of them as the settings hold it: "KEY KIND DELAY ACTION" for each, with semicolons between. What cannot be
/// understood is left out; there are at most twenty.
std::vector<CapturePreset> readPresets(std::string_view text);
std::string presetsText(const std::vector<CapturePreset>& presets);
/// For menus: "Region, after 3 s, then upload".
std::string presetCaption(const CaptureRequest& request);

}  // namespace glimmer
