#include "editor/recovery/recovery_writer.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "common/files.h"
#include "editor/annotations/annotation_record.h"
#include "editor/annotations/shapes_list.h"
#include "editor/document/packed_pixels.h"
#include "editor/recovery/recovery_files.h"

namespace fs = std::filesystem;

namespace glimmer {

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

fs::path RecoveryWriter::bandPath(uint64_t file) const { return recoveryBandFile(folder_, file); }

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
    if (!writeFile(folder_ / recoveryManifestName, encodeManifest(manifest), {.patient = false})) return false;
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
    for (int i = 0; i < recoveryFilesRemovedAtOnce && !removable_.empty(); ++i) {
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
