// Which capture of a session is on the stage, and which ones have addresses.

#include <algorithm>
#include <new>

#include "editor/session/capture_session.h"

namespace glimmer {

namespace {

bool wakes(const CaptureDocument& capture) {
    try {
        static_cast<void>(capture.background());
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

}  // namespace

// Below whatever waits for the user nothing is replaced: its answer is for the capture that it was asked for.
void CaptureSession::show(CaptureDocument& capture) {
    due_ = nullptr;
    if (&capture == current_) return;
    if (!stageIsFree()) {
        due_ = &capture;
        return;
    }
    if (putOnStage(capture)) return;
    tell(&SessionListener::currentStays);
    if (together_ == 0)
        tell(&SessionListener::noRoomFor, capture);
    else
        due_ = &capture;  // once more, and said then, when all have come
}

void CaptureSession::showDue() {
    if (due_ != nullptr && stageIsFree()) show(*due_);
}

/// False, with nothing changed, when there is no room for the capture's picture.
bool CaptureSession::putOnStage(CaptureDocument& capture) {
    parkOthers(&capture);
    // The room that the one before takes may be what is missing.
    if (!wakes(capture) && (current_ == nullptr || !current_->park() || !wakes(capture))) return false;
    stage_->show(capture);
    current_ = &capture;
    if (&capture == due_) due_ = nullptr;
    parkOthers();
    tell(&SessionListener::currentChanged);
    return true;
}

/// The capture behind these places, or the one before them, or none, comes on the stage before they go.
void CaptureSession::showInsteadOf(const std::vector<size_t>& places) {
    const auto stays = [&places](size_t place) { return !std::binary_search(places.begin(), places.end(), place); };
    for (size_t place = places.front(); place < entries_.size(); ++place)
        if (stays(place) && putOnStage(at(place))) return;
    for (size_t place = places.front(); place-- > 0;)
        if (putOnStage(at(place))) return;
    clearStage();
}

void CaptureSession::clearStage() {
    if (current_ != nullptr) stage_->clear();
    current_ = nullptr;
    due_ = nullptr;
    tell(&SessionListener::currentChanged);
}

void CaptureSession::parkOthers(const CaptureDocument* also) const {
    for (const Entry& entry : entries_)
        if (entry.capture.get() != current_ && entry.capture.get() != also) entry.capture->park();
}

}  // namespace glimmer
