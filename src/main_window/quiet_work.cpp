#include "main_window/quiet_work.h"

#include <chrono>
#include <utility>

namespace glimmer {

namespace {

constexpr int thumbnailPeriod = 100;  // milliseconds
constexpr int recoveryPeriod = 30;
/// A round ends after this time, so that nobody notices it. With a piece that is slow it takes up to 30 ms.
constexpr std::chrono::milliseconds recoveryBudget{8};

}  // namespace

QuietWork::QuietWork(CaptureSession& session, CaptureList& list, std::function<bool()> shown,
                     std::function<bool()> quiet)
    : session_(session), thumbnails_(session, list), shown_(std::move(shown)), quiet_(std::move(quiet)) {
    tmrUpdateThumbnails_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) {
        session_.showDue();
        if (shown_() && quiet_()) thumbnails_.work();
        if (!shown_()) tmrUpdateThumbnails_.Stop();
    });
    tmrRecovery_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) {
        session_.recovery().work(recoveryBudget);
        if (!shown_() && session_.recovery().complete()) tmrRecovery_.Stop();
    });
}

void QuietWork::wake() {
    if (shown_() && !tmrUpdateThumbnails_.IsRunning()) tmrUpdateThumbnails_.Start(thumbnailPeriod);
    if (!tmrRecovery_.IsRunning()) tmrRecovery_.Start(recoveryPeriod);
}

}  // namespace glimmer
