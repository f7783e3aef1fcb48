// The captures of a session: coming, going, their order and names, the project.

#include "editor/session/capture_session.h"

#include <algorithm>
#include <utility>

#include "common/assertion.h"
#include "common/text.h"
#include "editor/commands/set_info.h"

namespace glimmer {

CaptureSession::~CaptureSession() {
    for (const Entry& entry : entries_) recovery_.leave(*entry.capture);
}

CaptureSession::Captures CaptureSession::all() const {
    Captures all;
    for (const Entry& entry : entries_) all.push_back(entry.capture.get());
    return all;
}

CaptureSession::Captures CaptureSession::unsaved() const {
    Captures all;
    for (const Entry& entry : entries_)
        if (entry.capture->modified()) all.push_back(entry.capture.get());
    return all;
}

size_t CaptureSession::placeOf(const CaptureDocument& capture) const {
    const auto at = std::find_if(entries_.begin(), entries_.end(),
                                 [&capture](const Entry& entry) { return entry.capture.get() == &capture; });
    return static_cast<size_t>(at - entries_.begin());
}

CaptureDocument& CaptureSession::add(std::unique_ptr<CaptureDocument> capture,
                                     std::optional<RecoveryStore::Entry> former) {
    GLIMMER_ASSERT(stage_ != nullptr, "stage_ != NULL", "capture_session");
    CaptureDocument& added = *capture;
    const int observer = added.observe(
        [this, &added](const DocumentChange& change) { tell(&SessionListener::captureChanged, added, change); });
    entries_.push_back({std::move(capture), observer});
    recovery_.add(added, std::move(former));
    projectTouched();
    tell(&SessionListener::captureAdded, entries_.size() - 1);
    show(added);
    return added;  // cppcheck-suppress returnReference ; the session owns it now
}

void CaptureSession::remove(const Captures& captures) {
    std::vector<size_t> places;
    for (size_t place = 0; place < entries_.size(); ++place)
        if (std::find(captures.begin(), captures.end(), entries_[place].capture.get()) != captures.end())
            places.push_back(place);
    removePlaces(places, false);
}

void CaptureSession::discardAll(bool kept) {
    std::vector<size_t> places(entries_.size());
    for (size_t i = 0; i < places.size(); ++i) places[i] = i;
    clearStage();
    removePlaces(places, kept);
}

/// `places` in rising order.
void CaptureSession::removePlaces(const std::vector<size_t>& places, bool kept) {
    if (places.empty()) return;
    const auto goes = [this, &places](const CaptureDocument* capture) {
        return capture != nullptr && std::binary_search(places.begin(), places.end(), placeOf(*capture));
    };
    const bool currentGoes = goes(current_);
    if (goes(due_)) {
        due_ = nullptr;
        if (!currentGoes) tell(&SessionListener::currentStays);
    }
    if (currentGoes) showInsteadOf(places);
    for (auto place = places.rbegin(); place != places.rend(); ++place) {
        const std::unique_ptr<CaptureDocument> capture = std::move(entries_[*place].capture);
        capture->forget(entries_[*place].observer);
        if (kept)
            recovery_.leave(*capture);
        else
            recovery_.discard(*capture);
        entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(*place));
        tell(&SessionListener::captureRemoved, *place, *capture);
    }
    if (currentGoes && current_ != nullptr) tell(&SessionListener::currentStays);
    // What is opened into an empty session has nothing to do with the project any more.
    if (entries_.empty()) projectPath_.clear();
    projectTouched();
}

void CaptureSession::move(size_t from, size_t to) {
    if (from >= entries_.size() || to >= entries_.size() || from == to) return;
    Entry entry = std::move(entries_[from]);
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(from));
    entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(to), std::move(entry));
    projectTouched();
    tell(&SessionListener::captureMoved, from, to);
    show(at(to));
}

Status CaptureSession::rename(CaptureDocument& capture, const std::string& name) {
    const std::string kept = firstUnits(trimmed(name), longestName);
    if (kept.empty() || kept == capture.info().name) return {};
    return capture.run(std::make_unique<SetInfo>(SetInfo::Field::Name, kept));
}

void CaptureSession::projectTouched() {
    projectChanged_ = !projectPath_.empty();
    tell(&SessionListener::projectChanged);
}

void CaptureSession::setProject(const std::string& path) {
    projectPath_ = path;
    projectChanged_ = false;
    tell(&SessionListener::projectChanged);
}

bool CaptureSession::State::covers(const State& later) const {
    const auto within = [](const Captures& few, const Captures& many) {
        return std::all_of(few.begin(), few.end(), [&many](const CaptureDocument* capture) {
            return std::find(many.begin(), many.end(), capture) != many.end();
        });
    };
    return within(later.all_, all_) && within(later.unsaved_, unsaved_);
}

}  // namespace glimmer
