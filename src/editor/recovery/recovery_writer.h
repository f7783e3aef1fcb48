#pragma once

#include <chrono>
#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

#include "editor/document/document.h"
#include "editor/recovery/recovery_manifest.h"
#include "editor/recovery/recovery_store.h"

namespace glimmer {

/// Keeps one capture's state in the recovery folder, piece by piece. Lives as long as the capture is open; its
/// destructor leaves the folder as it is (a capture that is closed for good calls remove()).
class RecoveryWriter {
public:
    /// What the disk did not take is tried again after this time.
    static constexpr std::chrono::milliseconds standardRetry{5000};

    RecoveryWriter(RecoveryStore& store, CaptureDocument& document, std::chrono::milliseconds retry = standardRetry);
    ~RecoveryWriter();
    RecoveryWriter(const RecoveryWriter&) = delete;
    RecoveryWriter& operator=(const RecoveryWriter&) = delete;
    RecoveryWriter(RecoveryWriter&&) = delete;
    RecoveryWriter& operator=(RecoveryWriter&&) = delete;

    /// Whether the folder does not hold what is on the screen: there are changes that are neither saved nor kept yet,
    /// or the capture was saved and what is kept is to be removed.
    [[nodiscard]] bool pending() const;
    /// Does one piece of the work: one band of pixels (some 5 ms), or the manifest, or removing a few files that are no
    /// longer needed. Call it when the user is idle. True when there is more to do. A disk that does not take the file
    /// is tried again with the next change, or after a while.
    bool work();
    /// Whether all that is left to do waits for the disk, to which a thread of its own writes the bands through: the
    /// manifest names them only when they are there, unless it hurries. Calling work() meanwhile does no harm.
    [[nodiscard]] bool waiting() const;
    /// Waits for that.
    void settle();
    /// The next manifest does not wait for the disk: the process is about to end, and the system itself, which has the
    /// bands already, writes them through.
    void hurry() { hurried_ = true; }
    /// Removes everything that is kept of the capture: it was saved, or is not wanted.
    void remove();
    /// An entry of an earlier run that this capture was opened from: removed as soon as this run keeps the capture.
    void replaces(RecoveryStore::Entry entry) {
        former_ = std::move(entry);
        recovered_ = true;
    }
    /// Whether the capture was opened from such an entry.
    [[nodiscard]] bool recovered() const { return recovered_; }

private:
    struct Picture {
        StoredPicture stored;
        std::vector<bool> dirty;
    };
    struct Drawing {
        std::shared_ptr<const TBitmap> bitmap;
        Picture picture;
    };
    void invalidate(const Rect& area);
    void reset(Picture& picture, Size size);
    bool writeBand(const TBitmap& bitmap, Picture& picture);
    enum class Flushed : uint8_t { All, NotYet, Failed };
    Flushed flushBands();
    bool writeManifest();
    bool removeOrphans();
    [[nodiscard]] std::filesystem::path bandPath(uint64_t file) const;

    RecoveryStore& store_;
    CaptureDocument& document_;
    int observer_;
    std::filesystem::path folder_;
    Picture background_;
    std::vector<Drawing> drawings_;
    uint64_t lastFile_ = 0;
    std::vector<uint64_t> orphans_;  ///< files that the next manifest no longer names
    std::vector<uint64_t> removable_;
    std::optional<uint64_t> keptRevision_;    ///< what the manifest holds
    std::optional<uint64_t> failedRevision_;  ///< the disk did not take this one
    std::chrono::milliseconds retry_;
    std::chrono::steady_clock::time_point retryAt_{};
    std::vector<std::filesystem::path> written_;                ///< bands that may not be on the disk yet
    std::future<std::vector<std::filesystem::path>> flushing_;  ///< those of them that it failed for
    std::stop_source stop_;
    bool hurried_ = false;
    std::optional<RecoveryStore::Entry> former_;
    bool recovered_ = false;
};

}  // namespace glimmer
