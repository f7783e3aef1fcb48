#include "editor/recovery/recovery.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include "common/files.h"
#include "editor/annotations/annotation_record.h"
#include "editor/annotations/shapes_list.h"
#include "editor/document/packed_pixels.h"

namespace fs = std::filesystem;

namespace glimmer {

namespace {

constexpr const char* manifestName = "capture.manifest";
constexpr const char* lockName = "session";
constexpr const char* bandExtension = ".band";
constexpr std::string_view runs = "run";
constexpr std::string_view captures = "capture";
constexpr int filesRemovedAtOnce = 8;
/// Deflated pixels are hardly larger than plain ones.
constexpr uint64_t maxBandBytes = uint64_t{2} * 1024 * 1024;

fs::path bandFile(const fs::path& folder, uint64_t file) { return folder / (std::to_string(file) + bandExtension); }

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
        for (const StoredPicture::Band& band : picture.bands) named.insert(bandFile({}, band.file));
    };
    name(manifest.background);
    for (const StoredPicture& drawing : manifest.drawings) name(drawing);
    std::vector<fs::path> unnamed;
    std::error_code error;
    for (fs::directory_iterator at(capture, error), end; !error && at != end; at.increment(error)) {
        const fs::path extension = at->path().extension();
        if ((extension == bandExtension && !named.contains(at->path().filename())) || extension == ".tmp")
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
    fs::remove(capture / manifestName, error);
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
        Result<std::vector<uint8_t>> data = readFile(bandFile(folder, band.file), limit);
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

// --- the folder

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
            const bool listed = fs::exists(capture / manifestName, error);
            if (!listed && error) continue;
            if (!listed) {
                removeFolder(capture);  // it ended before the first state was whole
                continue;
            }
            const Result<std::vector<uint8_t>> data = readFile(capture / manifestName, maxManifestBytes);
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
    Result<std::vector<uint8_t>> data = readFile(entry.folder / manifestName, maxManifestBytes);
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

void RecoveryStore::discard(const Entry& entry) {
    // The manifest first: what is left if we are stopped here is no capture any more.
    std::error_code ignored;
    fs::remove(entry.folder / manifestName, ignored);
    removeFolder(entry.folder);
    // The run's own folder goes with its last capture.
    fs::remove(entry.folder.parent_path(), ignored);
}

void RecoveryStore::toss(const fs::path& captureFolder) {
    // The manifest first: what is left if we are stopped here is no capture any more.
    std::error_code ignored;
    fs::remove(captureFolder / manifestName, ignored);
    tossed_.push_back(captureFolder);
}

bool RecoveryStore::tidy() {
    if (tossed_.empty()) return false;
    std::error_code error;
    int removed = 0;
    for (fs::directory_iterator at(tossed_.back(), error), end; !error && at != end && removed < filesRemovedAtOnce;) {
        const fs::path file = at->path();
        at.increment(error);
        std::error_code ignored;
        if (fs::remove(file, ignored)) ++removed;
    }
    if (removed == filesRemovedAtOnce) return true;
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

// --- one capture

RecoveryWriter::RecoveryWriter(RecoveryStore& store, CaptureDocument& document, std::chrono::milliseconds retry)
    : store_(store),
      document_(document),
      observer_(document.observe([this](const DocumentChange& change) {
          if (change.pixels || change.size) invalidate(change.area);
      })),
      retry_(retry) {
    reset(background_, document_.size());
}

RecoveryWriter::~RecoveryWriter() {
    stop_.request_stop();
    document_.forget(observer_);
}

void RecoveryWriter::reset(Picture& picture, Size size) {
    for (const StoredPicture::Band& band : picture.stored.bands)
        if (band.file != 0) orphans_.push_back(band.file);
    picture.stored = {size, std::vector<StoredPicture::Band>(StoredPicture::bandCount(size))};
    picture.dirty.assign(picture.stored.bands.size(), true);
}

void RecoveryWriter::invalidate(const Rect& area) {
    const Size size = document_.size();
    if (background_.stored.size != size) {
        reset(background_, size);
        return;
    }
    const Rect part = area.intersected({0, 0, size.width, size.height});
    if (part.empty()) return;
    const int32_t rows = StoredPicture::bandRows(size);
    for (int32_t band = part.top / rows; band <= (part.bottom - 1) / rows; ++band)
        background_.dirty[static_cast<size_t>(band)] = true;
}

bool RecoveryWriter::pending() const {
    if (!document_.modified()) return keptRevision_ || !folder_.empty() || former_;
    if (keptRevision_ == document_.revision()) return false;
    return failedRevision_ != document_.revision() || std::chrono::steady_clock::now() >= retryAt_;
}

bool RecoveryWriter::waiting() const {
    return !hurried_ && flushing_.valid() && flushing_.wait_for(std::chrono::seconds(0)) == std::future_status::timeout;
}

void RecoveryWriter::settle() {
    if (flushing_.valid()) flushing_.wait();
}

/// Whether the manifest may name what was written. Starts what is missing to that and looks in again.
RecoveryWriter::Flushed RecoveryWriter::flushBands() {
    if (hurried_) return Flushed::All;
    if (!flushing_.valid()) {
        if (written_.empty()) return Flushed::All;
        stop_ = std::stop_source();
        const auto flush = [files = std::exchange(written_, {}), stop = stop_.get_token()]() mutable {
            std::erase_if(files, [&stop](const fs::path& file) { return stop.stop_requested() || flushFile(file); });
            return files;
        };
        // Where no thread can be had it is done here, by get().
        flushing_ = std::async(std::launch::async | std::launch::deferred, flush);
    }
    if (flushing_.wait_for(std::chrono::milliseconds(1)) == std::future_status::timeout) return Flushed::NotYet;
    const std::vector<fs::path> failed = flushing_.get();
    if (failed.empty()) return written_.empty() ? Flushed::All : Flushed::NotYet;
    written_.insert(written_.end(), failed.begin(), failed.end());
    return Flushed::Failed;
}

bool RecoveryWriter::work() {
    if (!document_.modified()) {
        if (pending()) remove();
        return false;
    }
    // Before anything is added: these hold what the picture showed before.
    if (!removable_.empty()) return removeOrphans() || pending();
    if (!pending()) return false;
    const auto failed = [this] {
        failedRevision_ = document_.revision();
        retryAt_ = std::chrono::steady_clock::now() + retry_;
        return false;
    };
    if (folder_.empty()) folder_ = store_.makeCaptureFolder();
    if (folder_.empty()) return failed();
    if (std::find(background_.dirty.begin(), background_.dirty.end(), true) != background_.dirty.end())
        return writeBand(document_.background(), background_) || failed();
    for (const TBBShape& shape : document_.annotations()) {
        const std::shared_ptr<const TBitmap>& bitmap = shape.shape.drawing;
        if (bitmap == nullptr) continue;
        auto known = std::find_if(drawings_.begin(), drawings_.end(),
                                  [&](const Drawing& drawing) { return drawing.bitmap == bitmap; });
        if (known == drawings_.end()) {
            drawings_.push_back({bitmap, {}});
            known = drawings_.end() - 1;
            reset(known->picture, bitmap->size());
        }
        if (std::find(known->picture.dirty.begin(), known->picture.dirty.end(), true) != known->picture.dirty.end())
            return writeBand(*bitmap, known->picture) || failed();
    }
    const Flushed flushed = flushBands();
    if (flushed == Flushed::NotYet) return true;
    return (flushed == Flushed::All && writeManifest()) || failed();
}

fs::path RecoveryWriter::bandPath(uint64_t file) const { return bandFile(folder_, file); }

bool RecoveryWriter::writeBand(const TBitmap& bitmap, Picture& picture) {
    const auto at =
        static_cast<size_t>(std::find(picture.dirty.begin(), picture.dirty.end(), true) - picture.dirty.begin());
    const int32_t rows = StoredPicture::bandRows(picture.stored.size);
    const int32_t top = static_cast<int32_t>(at) * rows;
    const std::vector<uint8_t> data = deflatePixels(bitmap, top, std::min(picture.stored.size.height, top + rows));
    const uint64_t file = ++lastFile_;
    // On the user's own time: written, but not waited for.
    if (data.empty() || !writeFile(bandPath(file), data, {.flush = false, .patient = false})) return false;
    written_.push_back(bandPath(file));
    StoredPicture::Band& band = picture.stored.bands[at];
    if (band.file != 0) orphans_.push_back(band.file);
    band = {file, static_cast<uint32_t>(data.size()), checksumOf(data)};
    picture.dirty[at] = false;
    return true;
}

bool RecoveryWriter::writeManifest() {
    RecoveryManifest manifest;
    manifest.info = document_.info();
    manifest.background = background_.stored;
    std::vector<Drawing> used;
    for (const TBBShape& shape : document_.annotations()) {
        const TShapeDescriptor descriptor = shape.describe();
        RecoveryManifest::Annotation annotation{encodeAnnotation(&descriptor), -1};
        if (descriptor.drawing != nullptr) {
            const auto same = [&](const Drawing& drawing) { return drawing.bitmap == descriptor.drawing; };
            auto at = std::find_if(used.begin(), used.end(), same);
            if (at == used.end()) {
                const auto known = std::find_if(drawings_.begin(), drawings_.end(), same);
                used.push_back(*known);
                at = used.end() - 1;
                manifest.drawings.push_back(known->picture.stored);
            }
            annotation.drawing = static_cast<int32_t>(at - used.begin());
        }
        manifest.annotations.push_back(std::move(annotation));
    }
    if (!writeFile(folder_ / manifestName, encodeManifest(manifest), {.patient = false})) return false;
    keptRevision_ = document_.revision();
    failedRevision_.reset();
    hurried_ = false;
    // Drawings that are no longer on the capture come back, with an undo, under new files.
    for (Drawing& drawing : drawings_) {
        const bool kept =
            std::any_of(used.begin(), used.end(), [&](const Drawing& one) { return one.bitmap == drawing.bitmap; });
        if (!kept)
            for (const StoredPicture::Band& band : drawing.picture.stored.bands) orphans_.push_back(band.file);
    }
    drawings_ = std::move(used);
    removable_.insert(removable_.end(), orphans_.begin(), orphans_.end());
    orphans_.clear();
    if (former_) store_.toss(former_->folder);
    former_.reset();
    return true;
}

bool RecoveryWriter::removeOrphans() {
    std::error_code ignored;
    for (int i = 0; i < filesRemovedAtOnce && !removable_.empty(); ++i) {
        fs::remove(bandPath(removable_.back()), ignored);
        removable_.pop_back();
    }
    return !removable_.empty();
}

void RecoveryWriter::remove() {
    // The thread has at most one file open, which then can be removed too.
    stop_.request_stop();
    settle();
    flushing_ = {};
    written_.clear();
    if (!folder_.empty()) store_.toss(folder_);
    if (former_) store_.toss(former_->folder);
    former_.reset();
    folder_.clear();
    keptRevision_.reset();
    orphans_.clear();
    removable_.clear();
    drawings_.clear();
    background_.stored.bands.clear();
    reset(background_, document_.size());
}

}  // namespace glimmer
