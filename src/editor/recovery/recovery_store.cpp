#include "editor/recovery/recovery_store.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include "common/files.h"
#include "editor/annotations/annotation_record.h"
#include "editor/annotations/shapes_list.h"
#include "editor/document/packed_pixels.h"
#include "editor/recovery/recovery_files.h"
#include "editor/recovery/recovery_manifest.h"

namespace fs = std::filesystem;

namespace glimmer {

namespace {

constexpr const char* lockName = "session";
constexpr std::string_view runs = "run";
constexpr std::string_view captures = "capture";
/// Deflated pixels are hardly larger than plain ones.
constexpr uint64_t maxBandBytes = uint64_t{2} * 1024 * 1024;

/// The folders in it that the program made: "run7", "capture12". What somebody else put there is not looked at.
std::vector<fs::path> foldersIn(const fs::path& folder, std::string_view kind) {
    std::vector<fs::path> found;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        const std::string name = utf8FromPath(at->path().filename());
        std::error_code unknown;
        if (name.starts_with(kind) && name.size() > kind.size() &&
            name.find_first_not_of("0123456789", kind.size()) == std::string::npos && at->is_directory(unknown))
            found.push_back(at->path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

void removeFolder(const fs::path& folder) {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

/// Removes the bands that the manifest does not name, and what was being written: pixels from before its last change.
void removeUnnamed(const fs::path& capture, const RecoveryManifest& manifest) {
    std::set<fs::path> named;
    const auto name = [&](const StoredPicture& picture) {
        for (const StoredPicture::Band& band : picture.bands) named.insert(recoveryBandFile({}, band.file));
    };
    name(manifest.background);
    for (const StoredPicture& drawing : manifest.drawings) name(drawing);
    std::vector<fs::path> unnamed;
    std::error_code error;
    for (fs::directory_iterator at(capture, error), end; !error && at != end; at.increment(error)) {
        const fs::path extension = at->path().extension();
        if ((extension == recoveryBandExtension && !named.contains(at->path().filename())) || extension == ".tmp")
            unnamed.push_back(at->path());
    }
    for (const fs::path& file : unnamed) fs::remove(file, error);
}

/// Moves a capture's folder, to another volume too; false when it stays where it was.
bool moveCapture(const fs::path& capture, const fs::path& target) {
    std::error_code error;
    fs::rename(capture, target, error);
    if (!error) return true;
    fs::copy(capture, target, fs::copy_options::recursive, error);
    if (error) {
        removeFolder(target);
        return false;
    }
    // The manifest first: what is left if we are stopped here is no capture any more.
    fs::remove(capture / recoveryManifestName, error);
    removeFolder(capture);
    return true;
}

Result<TBitmap> readPicture(const fs::path& folder, const StoredPicture& stored) {
    Result<TBitmap> picture = TBitmap::create(stored.size.width, stored.size.height, PixelFormat::Bgra32);
    if (!picture) return picture;
    const int32_t rows = StoredPicture::bandRows(stored.size);
    int32_t top = 0;
    for (const StoredPicture::Band& band : stored.bands) {
        const uint64_t limit = maxBandBytes + picture->stride() * 2;
        Result<std::vector<uint8_t>> data = readFile(recoveryBandFile(folder, band.file), limit);
        if (!data) return data.failure();
        if (data->size() != band.length || checksumOf(*data) != band.checksum)
            return Failure{"A file of the unsaved capture is damaged."};
        const int32_t bottom = std::min(stored.size.height, top + rows);
        if (Status done = inflatePixels(*data, *picture, top, bottom); !done) return done.failure();
        top = bottom;
    }
    return picture;
}

}  // namespace

RecoveryStore::RecoveryStore(fs::path folder) : folder_(std::move(folder)) {
    Run run = makeRun();
    own_ = std::move(run.folder);
    lock_ = std::move(run.lock);
}

RecoveryStore::Run RecoveryStore::makeRun() const {
    std::error_code error;
    fs::create_directories(folder_, error);
    for (int number = 1; number < 10000 && !error; ++number) {
        const fs::path folder = folder_ / (std::string(runs) + std::to_string(number));
        if (!fs::create_directory(folder, error)) continue;
        auto lock = std::make_unique<FileLock>(folder / lockName, 1);
        // Another run that looks for what was left behind was quicker: the folder is its to remove.
        if (lock->held()) return {folder, std::move(lock)};
    }
    return {};
}

RecoveryStore::~RecoveryStore() {
    while (tidy()) {
    }
    lock_.reset();
    std::error_code ignored;
    // Only when nothing is in them: not removed is not lost.
    if (!own_.empty()) fs::remove(own_, ignored);
    for (auto& [folder, lock] : taken_) {
        lock.reset();
        fs::remove(folder, ignored);
    }
}

std::vector<RecoveryStore::Entry> RecoveryStore::leftBehind() {
    std::vector<Entry> entries;
    for (const fs::path& run : foldersIn(folder_, runs)) {
        if (run == own_) continue;
        if (!taken_.contains(run)) {
            auto lock = std::make_unique<FileLock>(run / lockName, 1);
            if (!lock->held()) continue;  // that run is alive
            taken_[run] = std::move(lock);
        }
        for (const fs::path& capture : foldersIn(run, captures)) {
            std::error_code error;
            const bool listed = fs::exists(capture / recoveryManifestName, error);
            if (!listed && error) continue;
            if (!listed) {
                removeFolder(capture);  // it ended before the first state was whole
                continue;
            }
            const Result<std::vector<uint8_t>> data = readFile(capture / recoveryManifestName, maxManifestBytes);
            if (data && isUnknownVersion(*data)) continue;
            const std::optional<RecoveryManifest> manifest = data ? decodeManifest(*data) : std::nullopt;
            if (manifest) removeUnnamed(capture, *manifest);
            Entry entry{capture, {}, {}};
            entry.info.name = "A capture that cannot be read now";
            if (manifest) entry = {capture, manifest->info, manifest->background.size};
            entries.push_back(std::move(entry));
        }
    }
    return entries;
}

void RecoveryStore::takeOver(const fs::path& former) {
    std::error_code error;
    if (own_.empty() || fs::equivalent(former, folder_, error)) return;
    for (const fs::path& run : foldersIn(former, runs)) {
        auto lock = std::make_unique<FileLock>(run / lockName, 1);
        if (!lock->held()) continue;  // an earlier version of the program is running
        const std::vector<fs::path> found = foldersIn(run, captures);
        // Locked until all are there: to another run that looks now, half a capture would be none.
        const Run target = found.empty() ? Run{} : makeRun();
        if (!target.folder.empty())
            for (const fs::path& capture : found) moveCapture(capture, target.folder / capture.filename());
        lock.reset();
        fs::remove(run, error);
    }
    fs::remove(former, error);  // when nothing is left in it
}

Result<std::unique_ptr<CaptureDocument>> RecoveryStore::open(const Entry& entry) {
    Result<std::vector<uint8_t>> data = readFile(entry.folder / recoveryManifestName, maxManifestBytes);
    if (!data) return data.failure();
    const std::optional<RecoveryManifest> manifest = decodeManifest(*data);
    if (!manifest) return Failure{"The list of the unsaved capture's files is damaged."};
    Result<TBitmap> background = readPicture(entry.folder, manifest->background);
    if (!background) return background.failure();
    std::vector<std::shared_ptr<const TBitmap>> drawings;
    for (const StoredPicture& stored : manifest->drawings) {
        Result<TBitmap> drawing = readPicture(entry.folder, stored);
        if (!drawing) return drawing.failure();
        drawings.push_back(std::make_shared<const TBitmap>(drawing.take()));
    }
    TShapesList annotations;
    for (const RecoveryManifest::Annotation& kept : manifest->annotations) {
        std::optional<AnnotationRecord> record = decodeAnnotation(kept.record);
        if (!record) return Failure{"An annotation of the unsaved capture is damaged."};
        if (kept.drawing >= 0) record->descriptor.drawing = drawings[static_cast<size_t>(kept.drawing)];
        clampDescriptor(record->descriptor);
        annotations.insert(annotations.size(), TBBShape(record->descriptor));
    }
    return CaptureDocument::create(background.take(), manifest->info, std::move(annotations));
}

void RecoveryStore::toss(const fs::path& captureFolder) {
    // The manifest first: what is left if we are stopped here is no capture any more.
    std::error_code ignored;
    fs::remove(captureFolder / recoveryManifestName, ignored);
    tossed_.push_back(captureFolder);
}

bool RecoveryStore::tidy() {
    if (tossed_.empty()) return false;
    std::error_code error;
    int removed = 0;
    for (fs::directory_iterator at(tossed_.back(), error), end;
         !error && at != end && removed < recoveryFilesRemovedAtOnce;) {
        const fs::path file = at->path();
        at.increment(error);
        std::error_code ignored;
        if (fs::remove(file, ignored)) ++removed;
    }
    if (removed == recoveryFilesRemovedAtOnce) return true;
    // All were tried. What cannot be removed now goes at the next start, where it is no capture.
    removeFolder(tossed_.back());
    // The run's own folder goes with its last capture.
    fs::remove(tossed_.back().parent_path(), error);
    tossed_.pop_back();
    return !tossed_.empty();
}

fs::path RecoveryStore::makeCaptureFolder() {
    if (own_.empty()) return {};
    const fs::path folder = own_ / (std::string(captures) + std::to_string(++captures_));
    std::error_code error;
    fs::create_directory(folder, error);
    return error ? fs::path() : folder;
}

}  // namespace glimmer
