#include "host/entry/capture_start.h"

#include <wx/app.h>
// After the toolkit's headers, which do not stand its names.
#include <windows.h>

#include <filesystem>
#include <system_error>

#include "common/boundary.h"
#include "common/files.h"
#include "common/library_module.h"
#include "common/wide_text.h"
#include "host/program/capture_answer.h"
#include "host/program/host_state.h"
#include "host/program/screen_commands.h"
#include "host/program/single_instance.h"
#include "host/program/toolkit.h"
#include "host/program/uMForm.h"
#include "main_window/uMainEditor.h"

namespace glimmer {

namespace {

/// A program with windows has no console, but the one that it was started from may have.
void writeError(const std::string& text) {
    HANDLE out = GetStdHandle(STD_ERROR_HANDLE);
    if ((out == nullptr || out == INVALID_HANDLE_VALUE) && AttachConsole(ATTACH_PARENT_PROCESS) != FALSE)
        out = CreateFileW(L"CONOUT$", GENERIC_WRITE, FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    const std::string line = text + "\r\n";
    DWORD written = 0;
    if (out != nullptr && out != INVALID_HANDLE_VALUE)
        WriteFile(out, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

/// The instance has another current folder.
std::string fullPath(const std::string& file) {
    std::error_code error;
    const std::filesystem::path full = std::filesystem::absolute(pathFromUtf8(file), error);
    return error ? file : utf8FromPath(full);
}

/// This process is the instance, for the capture at least.
CaptureOutcome captureHere(const CaptureRequest& request) {
    if (!startToolkit()) return CaptureOutcome::Failed;
    CaptureOutcome outcome = CaptureOutcome::Failed;
    MForm = new TMForm;  // the toolkit's window list holds it until Destroy()
    MForm->CallAfter([&outcome, &request] {
        guarded([&] { outcome = runCapture(request); });
        const bool stays = pMainEditor != nullptr && pMainEditor->IsShown();
        if (stays && MForm != nullptr)
            MForm->start(std::nullopt, true);
        else
            terminateApplication();
    });
    runMessageLoop();
    shutDownProgram();
    if (MForm != nullptr) MForm->Destroy();  // which the deferred work below does
    MForm = nullptr;
    runDeferredWork();
    return outcome;
}

}  // namespace

CaptureOutcome startCapture(const Result<CaptureRequest>& wanted) {
    if (!wanted) {
        writeError(wanted.message());
        return CaptureOutcome::Wrong;
    }
    CaptureRequest request = *wanted;
    if (!request.file.empty()) request.file = fullPath(request.file);
    switch (claimInstance()) {
        case InstanceClaim::OutOfReach:
            writeError("Glimmerpad already runs as administrator, and Windows lets other programs hand it nothing.");
            return CaptureOutcome::Failed;
        case InstanceClaim::Another: {
            const AwaitedAnswer answer;
            if (handOver(answer.text(request))) return answer.wait();
            break;  // it has ended, and this process has taken its place
        }
        case InstanceClaim::First:
            break;
    }
    return captureHere(request);
}

}  // namespace glimmer
