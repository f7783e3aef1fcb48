#include "host/commands/host_commands.h"

#include <array>

#include "common/debug_channel.h"
#include "common/wide_text.h"
#include "glimmerpad.h"
#include "host/program/uProgram.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

struct Command {
    std::string_view name;
    int32_t (*run)(const CommandArguments& arguments);
    bool needsProgram;  ///< known only while the controller exists
};

constexpr std::array commands = {
    Command{"resumeEditing", commandResumeEditing, false},
    Command{"getResumeAvailable", commandGetResumeAvailable, false},
    Command{"openSettings", commandOpenSettings, false},
    Command{"openFile", commandOpenFile, false},
    Command{"openFromClipboard", commandOpenFromClipboard, false},
    Command{"getBitmapDC", commandGetBitmapDC, false},
    Command{"ieCaptureOptions", commandIECaptureOptions, false},
    Command{"downloadUpdate", commandDownloadUpdate, false},
    Command{"installUpdate", commandInstallUpdate, false},
    Command{"integrateIntoIE", commandIntegrateIntoIE, false},
    Command{"isUpdateAvailable", commandIsUpdateAvailable, false},
    Command{"setAddonVersion", commandSetAddonVersion, false},
    Command{"processInfo", commandProcessInfo, true},
    Command{"grabTB", commandGrabTB, false},
    Command{"captureBrowser", commandCaptureBrowser, false},
    Command{"getEncodedContent", commandGetEncodedContent, false},
    Command{"storeEncodedContent", commandStoreEncodedContent, false},
    Command{"JSONFunctionZ", commandJSONFunctionZ, false},
    Command{"JSONFunction", commandJSONFunction, false},
    Command{"FGWindowPatch", commandFGWindowPatch, false},
    Command{"activateApp", commandActivateApp, false},
    Command{"getCheckForIEUpdates", commandGetCheckForIEUpdates, false},
};

}  // namespace

std::string CommandArguments::text1() const {
    return fromWide(reinterpret_cast<const wchar_t*>(arg1), GLIMMERPAD_MAX_TEXT);
}

int32_t executeCommand(std::string_view name, const CommandArguments& arguments) {
    for (const Command& command : commands) {
        if (command.name != name || (command.needsProgram && !pProgram)) continue;
        const int32_t answer = command.run(arguments);
        debugRemark("command " + std::string(name) + ": " + std::to_string(answer));
        return answer;
    }
    showError("Unknown function: " + std::string(name));
    return 0;
}

}  // namespace glimmer
