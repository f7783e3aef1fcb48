#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "common/file_lock.h"
#include "editor/document/document.h"

namespace glimmer {

/// The recovery folder: captures with unsaved changes, kept so that a crash or a power loss costs seconds of work.
///
/// Each run of the program has a folder in it, locked as long as the run lives, with one folder a capture: files of
/// deflated bands of pixels, which are never changed once written, and a manifest that names the ones in effect. The
/// manifest is replaced in one step after everything that it names is on the disk, so that at every moment the folder
/// holds one whole state of the capture.
class RecoveryStore {
public:
    /// Makes this run's folder below `folder` (made when missing). Without a folder (no rights, no room) nothing is
    /// kept and nothing is found.
    explicit RecoveryStore(std::filesystem::path folder);
    ~RecoveryStore();
    RecoveryStore(const RecoveryStore&) = delete;
    RecoveryStore& operator=(const RecoveryStore&) = delete;
    RecoveryStore(RecoveryStore&&) = delete;
    RecoveryStore& operator=(RecoveryStore&&) = delete;

    /// A capture that an earlier run left behind.
    struct Entry {
        std::filesystem::path folder;
        CaptureInfo info;
        Size size;
    };
    /// What runs that are over left behind. Their folders stay locked for this run until the store goes. A capture
    /// whose list cannot be read now (another program has it open, it is damaged) has no size; opening it says why. One
    /// that a newer version of the program kept is that one's to offer, and stays. Removed are captures of which no
    /// whole state was ever there, and bands that a run that died was about to remove.
    [[nodiscard]] std::vector<Entry> leftBehind();
    /// Moves what runs that are over left in another folder into this one, once; what cannot be moved stays there.
    void takeOver(const std::filesystem::path& former);
    /// The capture of an entry, with unsaved changes. Fails, with a sentence, when a file of it is damaged.
    static Result<std::unique_ptr<CaptureDocument>> open(const Entry& entry);

    /// A new folder for a capture of this run; empty when none can be made.
    [[nodiscard]] std::filesystem::path makeCaptureFolder();
    /// Makes a folder no capture any more; its files go with tidy(), or with the store.
    void toss(const std::filesystem::path& captureFolder);
    /// Removes a few files of what was tossed; false when nothing is left.
    bool tidy();

private:
    /// A new folder of a run, and its lock.
    struct Run {
        std::filesystem::path folder;
        std::unique_ptr<FileLock> lock;
    };
    [[nodiscard]] Run makeRun() const;

    std::filesystem::path folder_;
    std::filesystem::path own_;
    std::unique_ptr<FileLock> lock_;
    std::map<std::filesystem::path, std::unique_ptr<FileLock>> taken_;
    std::vector<std::filesystem::path> tossed_;
    uint32_t captures_ = 0;
};

}  // namespace glimmer
