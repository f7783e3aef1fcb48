#include "host/program/host_state.h"

#include "common/boundary.h"
#include "common/host_kind.h"
#include "common/inside_modal.h"
#include "host/program/chrome_fg_wnd_patch.h"
#include "host/program/toolkit.h"
#include "host/program/uProgram.h"
#include "output/ways/mail.h"
#include "settings/message_box.h"
#include "settings/settings.h"

namespace glimmer {

HostState::HostState() = default;
HostState::~HostState() = default;

HostState& hostState() {
    static HostState state;
    return state;
}

bool ensureProgram() {
    if (pProgram) return true;
    if (!startToolkit()) return false;
    // Once more at the end: minutes may have passed since the question. A host's process ends when the host does.
    setSessionEnd({&TProgram::prepareForSessionEnd, [] {
                       TProgram::prepareForSessionEnd();
                       if (isStandalone()) terminateApplication();
                   }});
    pProgram = std::make_unique<TProgram>(hostState().addonVersion, hostState().home);
    return true;
}

namespace {

int hostCalls = 0;  // in and back, one inside the other
bool shutdownWaiting = false;

void shutDownNow() {
    if (!pProgram) return;
    forgetMails();
    pProgram->closeWindows();
    pProgram.reset();
    runDeferredWork();
    closeSettings();
}

/// Shuts down if that waits and nothing of ours is on the stack any more; whether it does not wait any longer.
bool tryWaitingShutdown() {
    if (!shutdownWaiting) return true;
    if (hostCalls > 0 || insideModal()) return false;
    shutdownWaiting = false;
    setMessageBoxes(&systemMessageBoxes());
    shutDownNow();
    return true;
}

}  // namespace

HostCall::HostCall() { ++hostCalls; }

HostCall::~HostCall() {
    --hostCalls;
    guarded([] { tryWaitingShutdown(); });
}

bool shutdownWaits() { return shutdownWaiting; }

void shutDownProgram() {
    HostState& state = hostState();
    state.pendingBitmap.reset();
    state.foregroundPatch.reset();
    state.captureTiles.clear();
    state.ChromeRenderWidget = nullptr;
    // The first call is the one that asks for this.
    if (hostCalls <= 1 && !insideModal()) {
        shutDownNow();
        return;
    }
    shutdownWaiting = true;
    setMessageBoxes(nullptr);  // nobody is asked any more
    cancelModalsUntil(tryWaitingShutdown);
}

}  // namespace glimmer
