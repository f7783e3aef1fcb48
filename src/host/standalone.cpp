#include "host/standalone.h"

#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include <optional>
#include <string>
#include <vector>

#include "common/boundary.h"
#include "common/files.h"
#include "common/host_kind.h"
#include "common/library_module.h"
#include "common/wide_text.h"
#include "host/host_state.h"
#include "host/miscutils.h"
#include "host/single_instance.h"
#include "host/start_rules.h"
#include "host/toolkit.h"
#include "host/uMForm.h"
#include "output/open_captures.h"

namespace glimmer {

namespace {

std::vector<std::string> commandLineArguments() {
    std::vector<std::string> arguments;
    int count = 0;
    LPWSTR* texts = CommandLineToArgvW(GetCommandLineW(), &count);
    if (texts == nullptr) return arguments;
    for (int i = 1; i < count; ++i) arguments.push_back(fromWide(std::wstring_view(texts[i])));
    LocalFree(texts);
    return arguments;
}

void run(const StartRequest& request) {
    std::optional<OpeningAhead> opening;
    if (request.file) opening.emplace(pathFromUtf8(*request.file));
    if (!startToolkit()) return;
    MForm = new TMForm;  // the toolkit's window list holds it until Destroy()
    MForm->start(request.file);
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
        setHost(HostKind::Standalone);
        const std::vector<std::string> arguments = commandLineArguments();
        const StartRequest request = readArguments(arguments);
        if (request.terminate) {
            sendTerminate();
            return;
        }
        if (request.singleInstance) {
            if (anotherInstanceRuns()) {
                if (!arguments.empty()) {
                    handOver(handOverText(fromWide(std::wstring_view(GetCommandLineW())), arguments.front(),
                                          folderOf(moduleFile(nullptr))));
                }
                allowFirstToTakeForeground();
                postRestore();
                return;
            }
            claimInstance();
        }
        run(request);
    });
}

}  // namespace glimmer
