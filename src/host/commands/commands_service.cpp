// Commands about the program itself: options, updates, integration, versions.

#include "capture/capture_options.h"
#include "capture/uIECaptureOptions.h"
#include "common/library_module.h"
#include "host/commands/host_commands.h"
#include "host/program/host_state.h"
#include "host/program/toolkit.h"
#include "host/program/uProgram.h"
#include "host/program/updater.h"
#include "settings/message_box.h"
#include "settings/settings.h"

namespace glimmer {

int32_t commandIECaptureOptions(const CommandArguments&) {
    if (!startToolkit()) return 0;
    TIECaptureOptions(nullptr).ShowModal();
    return 1;
}

int32_t commandDownloadUpdate(const CommandArguments&) { return updater().download() ? 1 : 0; }

int32_t commandInstallUpdate(const CommandArguments&) {
    const Updater::Outcome outcome = updater().install(libraryFolder());
    if (outcome.installed) {
        showInformation(outcome.message);
    } else {
        showWarning(outcome.message);
    }
    return outcome.installed ? 1 : 0;
}

int32_t commandIntegrateIntoIE(const CommandArguments&) {
    if (!ensureProgram()) return 0;
    pProgram->integrateIntoIE();
    return 1;
}

int32_t commandIsUpdateAvailable(const CommandArguments& arguments) {
    return updater().isUpdateAvailable(arguments.text1() == "silent") ? 1 : 0;
}

int32_t commandSetAddonVersion(const CommandArguments& arguments) {
    hostState().addonVersion = arguments.text1();
    return 1;
}

int32_t commandProcessInfo(const CommandArguments& arguments) {
    pProgram->processInfo(arguments.text1());
    return 1;
}

int32_t commandGetCheckForIEUpdates(const CommandArguments& arguments) {
    if (arguments.out == nullptr) return 0;
    arguments.putByte(0);
    if (!ensureProgram()) return 0;
    arguments.putByte(CaptureOptions::load(settings()).performUpdateCheck ? 1 : 0);
    return 1;
}

}  // namespace glimmer
