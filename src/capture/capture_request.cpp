#include "capture/capture_request.h"

#include <array>
#include <charconv>
#include <sstream>

#include "common/text.h"

namespace glimmer {

namespace {

struct KindName {
    CaptureKind kind;
    std::string_view name;
    std::string_view caption;
};
constexpr std::array kinds = {
    KindName{CaptureKind::Region, "region", "Region or window"},
    KindName{CaptureKind::Window, "window", "Window in front"},
    KindName{CaptureKind::Client, "client", "Inside of the window in front"},
    KindName{CaptureKind::Monitor, "monitor", "Monitor"},
    KindName{CaptureKind::Desktop, "desktop", "Whole desktop"},
    KindName{CaptureKind::Last, "last", "Last area again"},
};

/// What follows on a capture, by its code; those without a caption are for hosts.
constexpr int32_t nothingFollows = 6;
constexpr int32_t mostAction = 10;
constexpr int32_t silent = 100;
constexpr std::array<std::string_view, mostAction + 1> actions = {
    "edit", "save", "copy", "e-mail", "open in the external editor", "upload", "keep", "print", "", "", "save at once"};

bool actionExists(int32_t code) {
    return code >= 0 && code < 2 * silent && code % silent <= mostAction &&
           !actions[static_cast<size_t>(code % silent)].empty();
}

std::optional<int32_t> number(std::string_view text) {
    int32_t value = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || read.ec != std::errc() || read.ptr != text.data() + text.size()) return std::nullopt;
    return value;
}

bool delayIsFine(std::optional<int32_t> delay) { return delay && *delay >= 0 && *delay <= CaptureRequest::mostSeconds; }

Result<CaptureRequest> readRequest(const std::vector<std::string>& arguments) {
    const std::optional<CaptureKind> kind =
        arguments.size() > 1 ? captureKindOf(arguments[1]) : std::optional<CaptureKind>();
    if (!kind)
        return Failure{"After -CAPTURE stands region, window, client, monitor, desktop or last: what is to be taken."};
    CaptureRequest request;
    request.kind = *kind;
    std::optional<int32_t> action;
    for (size_t i = 2; i < arguments.size(); i += 2) {
        const std::string name = upperAscii(arguments[i]);
        const std::string value = i + 1 < arguments.size() ? arguments[i + 1] : std::string();
        if (name == "-DELAY") {
            const std::optional<int32_t> delay = number(value);
            if (!delayIsFine(delay)) return Failure{"After -DELAY stands a number of seconds from 0 to 600."};
            request.delay = *delay;
        } else if (name == "-ACTION") {
            action = number(value);
            if (!action || !actionExists(*action))
                return Failure{
                    "After -ACTION stands the number of what follows: 0 to 7 or 10, and 100 more for no sound."};
        } else if (name == "-FILE") {
            if (value.empty()) return Failure{"After -FILE stands the name of the file for the picture."};
            request.file = value;
        } else {
            return Failure{"\"" + arguments[i] + "\" is not known here. There are -DELAY, -ACTION and -FILE."};
        }
    }
    request.action = action.value_or(request.file.empty() ? 0 : nothingFollows);
    return request;
}

}  // namespace

std::string_view captureKindName(CaptureKind kind) { return kinds[static_cast<size_t>(kind)].name; }

std::optional<CaptureKind> captureKindOf(std::string_view name) {
    const std::string upper = upperAscii(name);
    for (const KindName& one : kinds)
        if (upperAscii(one.name) == upper) return one.kind;
    return std::nullopt;
}

std::optional<Result<CaptureRequest>> readCaptureArguments(const std::vector<std::string>& arguments) {
    if (arguments.empty() || upperAscii(arguments[0]) != "-CAPTURE") return std::nullopt;
    return readRequest(arguments);
}

std::vector<std::string> captureArguments(const CaptureRequest& request) {
    std::vector<std::string> arguments{"-CAPTURE", std::string(captureKindName(request.kind)),
                                       "-DELAY",   std::to_string(request.delay),
                                       "-ACTION",  std::to_string(request.action)};
    if (!request.file.empty()) {
        arguments.emplace_back("-FILE");
        arguments.push_back(request.file);
    }
    return arguments;
}

std::vector<CapturePreset> readPresets(std::string_view text) {
    constexpr size_t most = 20;
    std::vector<CapturePreset> presets;
    while (!text.empty() && presets.size() < most) {
        const size_t end = std::min(text.find(';'), text.size());
        std::istringstream words{std::string(text.substr(0, end))};
        text.remove_prefix(std::min(end + 1, text.size()));
        std::string kindName;
        CapturePreset preset;
        std::string rest;
        if (!(words >> preset.hotKey >> kindName >> preset.request.delay >> preset.request.action) || words >> rest)
            continue;
        const std::optional<CaptureKind> kind = captureKindOf(kindName);
        if (!kind || !delayIsFine(preset.request.delay) || !actionExists(preset.request.action) || preset.hotKey < 0 ||
            preset.hotKey > 0xFFFF)
            continue;
        preset.request.kind = *kind;
        presets.push_back(preset);
    }
    return presets;
}

std::string presetsText(const std::vector<CapturePreset>& presets) {
    std::string text;
    for (const CapturePreset& preset : presets) {
        if (!text.empty()) text += "; ";
        text += std::to_string(preset.hotKey) + ' ' + std::string(captureKindName(preset.request.kind)) + ' ' +
                std::to_string(preset.request.delay) + ' ' + std::to_string(preset.request.action);
    }
    return text;
}

std::string presetCaption(const CaptureRequest& request) {
    std::string caption(kinds[static_cast<size_t>(request.kind)].caption);
    if (request.delay > 0) caption += ", after " + std::to_string(request.delay) + " s";
    const auto action = static_cast<size_t>(request.action % silent);
    if (action != 0 && action < actions.size()) caption += ", then " + std::string(actions[action]);
    return caption;
}

}  // namespace glimmer
