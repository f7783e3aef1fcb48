#include "editor/recovery/recovery_keeper.h"

#include <algorithm>
#include <new>

#include "common/assertion.h"

namespace glimmer {

std::vector<RecoveryKeeper::Kept>::iterator RecoveryKeeper::find(CaptureDocument& document) {
    const auto found =
        std::find_if(kept_.begin(), kept_.end(), [&](const Kept& kept) { return kept.document == &document; });
    GLIMMER_ASSERT(found != kept_.end(), "pKept != NULL", "uRecovery");
    return found;
}

void RecoveryKeeper::add(CaptureDocument& document, std::optional<RecoveryStore::Entry> former) {
    Kept kept{&document, std::make_unique<RecoveryWriter>(store_, document)};
    if (former) kept.writer->replaces(std::move(*former));
    kept_.push_back(std::move(kept));
}

void RecoveryKeeper::discard(CaptureDocument& document) {
    const auto kept = find(document);
    kept->writer->remove();
    kept_.erase(kept);
}

void RecoveryKeeper::leave(CaptureDocument& document) {
    const auto kept = find(document);
    if (document.modified() && (Clock::now() < sessionEndsUntil_ || document.touched() || kept->writer->recovered())) {
        do {
            kept->writer->settle();
            piece(*kept);
        } while (kept->more);
    } else {
        kept->writer->remove();
    }
    kept_.erase(kept);
}

/// One piece of one capture's work. A picture that was parked is parked again; without room for it the capture waits.
void RecoveryKeeper::piece(Kept& kept) {
    const bool parked = kept.document->parked();
    try {
        kept.more = kept.writer->work();
    } catch (const std::bad_alloc&) {
        kept.more = false;
        kept.notBefore = Clock::now() + std::chrono::seconds(5);
    }
    if (parked) kept.document->park();
}

void RecoveryKeeper::work(std::chrono::milliseconds budget) {
    const Clock::time_point end = Clock::now() + budget;
    // The user's work comes before captures that are just as they arrived, however many of those there are.
    for (const bool touched : {true, false})
        for (Kept& kept : kept_)
            if (kept.document->touched() == touched && !work(kept, end)) return;
    store_.tidy();
}

/// Keeps one capture; false when the time is over.
bool RecoveryKeeper::work(Kept& kept, Clock::time_point end) {
    // What was saved in the meantime goes at once.
    const bool rests = kept.document->modified() && !kept.more;
    if (rests && Clock::now() < kept.notBefore) return true;
    while (kept.more || kept.writer->pending()) {
        if (kept.writer->waiting()) return true;  // there will be time enough when the disk is ready
        piece(kept);
        const Clock::time_point now = Clock::now();
        if (!kept.more && kept.notBefore < now + rest_) kept.notBefore = now + rest_;
        if (now >= end) return false;
        if (!kept.more) break;
    }
    return true;
}

bool RecoveryKeeper::keepAll(std::chrono::milliseconds budget) {
    sessionEndsUntil_ = Clock::now() + sessionEndTime;
    const Clock::time_point end = Clock::now() + budget;
    // A capture that has changed since its work began takes a second round.
    for (int round = 0; round < 2 && !complete(); ++round) {
        for (Kept& kept : kept_) {
            kept.notBefore = {};
            if (kept.writer->pending()) kept.writer->hurry();
        }
        work(std::max(std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()), {}));
    }
    return complete();
}

bool RecoveryKeeper::complete() const {
    return std::none_of(kept_.begin(), kept_.end(), [](const Kept& kept) { return kept.writer->pending(); });
}

}  // namespace glimmer
