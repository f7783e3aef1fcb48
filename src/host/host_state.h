#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "capture/drawing_surface.h"
#include "common/bitmap.h"

namespace glimmer {

class TChromeFGWndPatch;

/// What a host's calls leave behind for its later calls.
struct HostState {
    /// Lent by "getBitmapDC", delivered by hostFinishCapture().
    std::optional<DrawingSurface> pendingBitmap;
    /// Grabs of the browser's render area in the order taken: "captureInit", "captureTab", "captureDone".
    std::vector<TBitmap> captureTiles;
    void* ChromeRenderWidget = nullptr;  ///< HWND, null before a successful "captureInit"
    std::unique_ptr<TChromeFGWndPatch> foregroundPatch;
    std::string addonVersion;  ///< outlives hostShutdown()

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
void shutDownProgram();

}  // namespace glimmer
