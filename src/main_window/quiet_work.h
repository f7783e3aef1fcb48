#pragma once

#include <wx/timer.h>

#include <functional>

#include "main_window/thumbnail_maker.h"

namespace glimmer {

/// What the main window does while the user does nothing: thumbnails, and keeping the captures against a crash. A
/// timer's message comes when there is no other, so nobody waits for it.
class QuietWork {
public:
    /// `shown`: whether the window is; `quiet`: whether no command runs.
    QuietWork(CaptureSession& session, CaptureList& list, std::function<bool()> shown, std::function<bool()> quiet);

    /// There may be something to do. The timers sleep while the window is hidden and nothing is to be kept.
    void wake();
    /// All thumbnails look different now.
    void makeThumbnailsAnew() { thumbnails_.makeAnew(); }

private:
    CaptureSession& session_;
    ThumbnailMaker thumbnails_;
    std::function<bool()> shown_;
    std::function<bool()> quiet_;
    wxTimer tmrUpdateThumbnails_;
    wxTimer tmrRecovery_;
};

}  // namespace glimmer
