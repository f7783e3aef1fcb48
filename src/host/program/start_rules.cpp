#include "host/program/start_rules.h"

#include "common/text.h"

namespace glimmer {

namespace {

constexpr size_t handOverLimit = 10000;
constexpr int32_t silentCode = 100;

bool contains(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

bool isMulti(std::string_view argument) { return upperAscii(argument) == "-MULTI"; }
bool isTray(std::string_view argument) { return upperAscii(argument) == "-TRAY"; }

}  // namespace

HostKind refinedHostKind(HostKind proposed, std::string_view executableName) {
    if (proposed != HostKind::Firefox) return proposed;
    const std::string name = upperAscii(executableName);
    if (contains(name, "THUNDERBIRD")) return HostKind::Thunderbird;
    if (contains(name, "SEAMONKEY")) return HostKind::SeaMonkey;
    if (contains(name, "VISTRANE-CONTAINER")) return HostKind::InternetExplorer;
    return HostKind::Firefox;
}

SettingsPlace settingsPlace(HostKind kind) {
    using Where = SettingsPlace::Where;
    switch (kind) {
        case HostKind::Standalone:
            return {"zk_settings.ini", Where::LibraryFolderIfWritable, "Glimmerpad"};
        case HostKind::InternetExplorer:
            return {"vx_ie_settings.ini", Where::LibraryFolderIfWritable, "Vistrane"};
        case HostKind::Chrome:
            return {"vx_chrome_settings.ini", Where::UserFolder, "Vistrane"};
        case HostKind::Firefox:
            return {"vx_fx_settings.ini", Where::ProfileFolder, {}};
        case HostKind::Thunderbird:
            return {"vx_tb_settings.ini", Where::ProfileFolder, {}};
        case HostKind::SeaMonkey:
            return {"vx_sm_settings.ini", Where::ProfileFolder, {}};
    }
    return {"def_settings.ini", Where::LibraryFolder, {}};
}

std::string profileFolder(std::string_view libraryFolder) {
    // Only A to Z change case, so positions in both texts are the same.
    const size_t at = upperAscii(libraryFolder).find("EXTENSIONS");
    return std::string(libraryFolder.substr(0, at));
}

StartRequest readArguments(const std::vector<std::string>& arguments) {
    StartRequest request;
    request.terminate = !arguments.empty() && upperAscii(arguments[0]) == "-TERMINATE";
    request.tray = !arguments.empty() && isTray(arguments[0]);
    for (size_t i = 0; i < arguments.size(); ++i) {
        if (i < 2 && isMulti(arguments[i])) request.singleInstance = false;
        if (!request.file && !isMulti(arguments[i]) && !isTray(arguments[i])) request.file = arguments[i];
    }
    return request;
}

std::string handOverText(std::string_view commandLine, std::string_view firstArgument,
                         std::string_view executableFolder, std::string_view fullPath) {
    // An argument with escaped quotes does not occur as it is; then it is handed over by itself.
    const size_t at = commandLine.find(firstArgument);
    std::string rest(at == std::string_view::npos ? firstArgument : commandLine.substr(at));
    if (!fullPath.empty()) rest.replace(0, firstArgument.size(), fullPath);
    std::string text = firstUnits(rest, handOverLimit);
    if (text.find_first_of("\\/:") == std::string::npos) text.insert(0, executableFolder);
    return text;
}

std::string handedOverFile(std::string_view text) { return trimmed(text.substr(0, text.find('"'))); }

CaptureCode splitCaptureCode(int32_t code) {
    return {static_cast<CaptureAction>(code % silentCode), code >= silentCode};
}

bool offersIntegration(HostKind host, IntegrationMoment moment) {
    if (moment == IntegrationMoment::Edited) return host != HostKind::Standalone;
    return host != HostKind::InternetExplorer && host != HostKind::Chrome;
}

WindowMove windowMoveAfter(CaptureAction action, bool made, DisplayState state, bool hidden, bool standalone) {
    if (state == DisplayState::Held) return WindowMove::Leave;
    if (action != CaptureAction::Edit) return hidden || standalone ? WindowMove::Refresh : WindowMove::Show;
    if (hidden) return state == DisplayState::Away ? WindowMove::Show : WindowMove::Leave;
    return made || !standalone ? WindowMove::Show : WindowMove::Leave;
}

}  // namespace glimmer
