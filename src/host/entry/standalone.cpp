#include "host/entry/standalone.h"

#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "capture/capture_request.h"
#include "common/boundary.h"
#include "common/files.h"
#include "common/host_kind.h"
#include "common/library_module.h"
#include "common/wide_text.h"
#include "host/entry/capture_start.h"
#include "host/program/host_state.h"
#include "host/program/miscutils.h"
#include "host/program/screen_commands.h"
#include "host/program/single_instance.h"
#include "host/program/start_rules.h"
#include "host/program/toolkit.h"
#include "host/program/uMForm.h"
#include "host/program/uProgram.h"
#include "output/files/open_captures.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

constexpr const char* outOfReach =
    "Glimmerpad already runs as administrator, and Windows lets other programs hand it nothing.\nUse its icon in the "
    "notification area, or exit it there and start it again.";

std::vector<std::string> commandLineArguments() {
    std::vector<std::string> arguments;
    int count = 0;
    LPWSTR* texts = CommandLineToArgvW(GetCommandLineW(), &count);
    if (texts == nullptr) return arguments;
    for (int i = 1; i < count; ++i) arguments.push_back(fromWide(std::wstring_view(texts[i])));
    LocalFree(texts);
    return arguments;
}

/// The full path of an argument that names an existing file from the current folder; empty when it does not.
std::string existingFile(const std::string& argument) {
    std::error_code error;
    const std::filesystem::path path = pathFromUtf8(argument);
    if (!std::filesystem::is_regular_file(path, error)) return {};
    const std::filesystem::path full = std::filesystem::absolute(path, error);
    return error ? std::string() : utf8FromPath(full);
}

/// Hands the arguments to the instance that runs; whether that is all there is to do.
bool leaveToAnother(const std::vector<std::string>& arguments) {
    std::optional<std::string> text;
    if (!arguments.empty()) {
        const std::string& first = arguments.front();
        // A name alone is one of the program's folder.
        const bool namesFolder = first.find_first_of("\\/:") != std::string::npos;
        text = handOverText(fromWide(std::wstring_view(GetCommandLineW())), first, folderOf(moduleFile(nullptr)),
                            namesFolder ? existingFile(first) : std::string());
    }
    return handOver(text);
}

/// Out of the folder of the document that the program was started with: nothing is looked for there.
void leaveCurrentFolder() { SetCurrentDirectoryW(toWide(folderOf(moduleFile(nullptr))).c_str()); }

void run(const StartRequest& request) {
    std::optional<OpeningAhead> opening;
    if (request.file) opening.emplace(pathFromUtf8(*request.file));
    if (!startToolkit()) return;
    MForm = new TMForm;  // the toolkit's window list holds it until Destroy()
    MForm->start(request.file, request.tray);
    runMessageLoop();
    shutDownProgram();
    if (MForm != nullptr) MForm->Destroy();  // which the deferred work below does
    MForm = nullptr;
    runDeferredWork();
}

}  // namespace

void runStandalone() {
    guarded([] {
        connectSystem();
        TProgram::setCaptureMenu(showCaptureMenu);
        setHost(HostKind::Standalone);
        const std::vector<std::string> arguments = commandLineArguments();
        if (const auto wanted = readCaptureArguments(arguments)) {
            // The launcher has no say in it: the process is this capture's.
            const CaptureOutcome outcome = startCapture(*wanted);
            ExitProcess(static_cast<UINT>(outcome));
        }
        StartRequest request = readArguments(arguments);
        if (request.terminate) {
            sendTerminate();
            return;
        }
        if (request.singleInstance) {
            const InstanceClaim claim = claimInstance();
            if (claim == InstanceClaim::OutOfReach) {
                if (!request.tray) showError(outOfReach);
                return;
            }
            if (claim == InstanceClaim::Another && (request.tray || leaveToAnother(arguments))) return;
        }
        if (request.file) {
            if (const std::string full = existingFile(*request.file); !full.empty()) request.file = full;
        }
        leaveCurrentFolder();
        run(request);
    });
}

}  // namespace glimmer
