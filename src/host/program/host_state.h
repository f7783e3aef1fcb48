#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "capture/drawing_surface.h"
#include "common/bitmap.h"

namespace glimmer {

class ProgramHome;
class TChromeFGWndPatch;

/// What a host's calls leave behind for its later calls.
struct HostState {
    /// Lent by "getBitmapDC", delivered by hostFinishCapture().
    std::optional<DrawingSurface> pendingBitmap;
    /// Grabs of the browser's render area in the order taken: "captureInit", "captureTab", "captureDone".
    std::vector<TBitmap> captureTiles;
    void* ChromeRenderWidget = nullptr;  ///< HWND, null before a successful "captureInit"
    std::unique_ptr<TChromeFGWndPatch> foregroundPatch;
    std::string addonVersion;     ///< outlives hostShutdown()
    ProgramHome* home = nullptr;  ///< what the standalone program has around the controller; null in a host

    HostState();
    ~HostState();
    HostState(const HostState&) = delete;
    HostState& operator=(const HostState&) = delete;
    HostState(HostState&&) = delete;
    HostState& operator=(HostState&&) = delete;
};

/// The one state of the process.
HostState& hostState();

/// Starts the toolkit and makes the program controller, where that has not happened yet. Whether it is there.
bool ensureProgram();

/// Closes the controller's windows, releases it and everything of the host state that a capture needs.
///
/// A host may ask for it while a call of its own, or a command of the user's, still waits for a dialog or for the
/// host itself. Then everything that is open is cancelled, and the program ends as soon as nothing of it is on the
/// stack any more.
void shutDownProgram();
/// Whether a shutdown waits for that. Until then the host gets nothing done.
bool shutdownWaits();

/// Stands where a host calls in, and where it is called back.
class HostCall {
public:
    HostCall();
    ~HostCall();
    HostCall(const HostCall&) = delete;
    HostCall& operator=(const HostCall&) = delete;
    HostCall(HostCall&&) = delete;
    HostCall& operator=(HostCall&&) = delete;
};

}  // namespace glimmer
