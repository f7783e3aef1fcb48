#include "host/host_state.h"

#include "host/chrome_fg_wnd_patch.h"
#include "host/toolkit.h"
#include "host/uProgram.h"
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
    pProgram = std::make_unique<TProgram>(hostState().addonVersion);
    if (!pProgram->initialize()) pProgram.reset();
    return pProgram != nullptr;
}

void shutDownProgram() {
    HostState& state = hostState();
    state.pendingBitmap.reset();
    state.foregroundPatch.reset();
    state.captureTiles.clear();
    state.ChromeRenderWidget = nullptr;
    if (!pProgram) return;
    pProgram->closeWindows();
    pProgram.reset();
    runDeferredWork();
    closeSettings();
}

}  // namespace glimmer
