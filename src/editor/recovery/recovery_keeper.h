#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "editor/recovery/recovery_store.h"
#include "editor/recovery/recovery_writer.h"

namespace glimmer {

/// Keeps all open captures of one run in the recovery folder (recovery_store.h), a piece of work at a time. The
/// captures outlive the object or are taken out before they go.
class RecoveryKeeper {
public:
    /// A capture that was kept rests this long before its next changes are written, so that a drag or fast typing is
    /// not written step by step.
    static constexpr std::chrono::milliseconds standardRest{1000};

    explicit RecoveryKeeper(std::filesystem::path folder, std::chrono::milliseconds rest = standardRest)
        : store_(std::move(folder)), rest_(rest) {}

    [[nodiscard]] RecoveryStore& store() { return store_; }

    /// Keeps the capture from now on. `former`: what it was opened from, if an earlier run left it behind.
    void add(CaptureDocument& document, std::optional<RecoveryStore::Entry> former = {});
    /// The capture is closed, saved or not wanted: what is kept of it goes. Then, and after leave(), it may be
    /// destroyed.
    void discard(CaptureDocument& document);
    /// The capture is closed without anybody having been asked. What the user has worked on and not saved is kept to
    /// its last change and offered again at the next start; a capture that is just as it arrived is not.
    void leave(CaptureDocument& document);

    /// Does what there is to do, but stops after the piece that exceeds `budget`; a piece takes some 5 ms. Call it
    /// from a timer, which comes behind all input.
    void work(std::chrono::milliseconds budget);
    /// Keeps everything as it is now, also what rests, within `budget` or so; whether that was time enough. For the
    /// next ten seconds captures just as they arrived outlive leave() as well: the session may end, or go on.
    bool keepAll(std::chrono::milliseconds budget);
    /// Whether all that should be kept is.
    [[nodiscard]] bool complete() const;

private:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds sessionEndTime{10};
    struct Kept {
        CaptureDocument* document;
        std::unique_ptr<RecoveryWriter> writer;
        Clock::time_point notBefore{};
        bool more = false;
    };
    std::vector<Kept>::iterator find(CaptureDocument& document);
    bool work(Kept& kept, Clock::time_point end);
    static void piece(Kept& kept);

    RecoveryStore store_;
    std::chrono::milliseconds rest_;
    std::vector<Kept> kept_;
    Clock::time_point sessionEndsUntil_{};
};

}  // namespace glimmer
