#include "editor/document/document.h"

#include <algorithm>

namespace glimmer {

Result<std::unique_ptr<CaptureDocument>> CaptureDocument::create(TBitmap picture, CaptureInfo info) {
    return create(std::move(picture), std::move(info), {});
}

Result<std::unique_ptr<CaptureDocument>> CaptureDocument::create(TBitmap picture, CaptureInfo info,
                                                                 TShapesList annotations) {
    if (picture.empty()) return Failure{"The capture has no picture."};
    if (picture.format() != PixelFormat::Bgra32) {
        Result<TBitmap> converted = picture.converted(PixelFormat::Bgra32);
        if (!converted) return converted.failure();
        picture = converted.take();
    }
    return std::unique_ptr<CaptureDocument>(
        new CaptureDocument(std::move(picture), std::move(info), std::move(annotations)));
}

CaptureDocument::CaptureDocument(TBitmap picture, CaptureInfo info, TShapesList annotations)
    : content_(std::move(picture), std::move(info), std::move(annotations),
               [this](const DocumentChange& change) { announce(change); }),
      history_(content_) {}

CaptureDocument::~CaptureDocument() = default;

Status CaptureDocument::run(std::unique_ptr<UndoCommand> command) { return changed(history_.run(std::move(command))); }

Status CaptureDocument::run(std::unique_ptr<UndoCommand> command, Gesture& gesture) {
    Status done = history_.run(std::move(command), gesture.number());
    if (done) gesture.use();
    return changed(std::move(done));
}

Status CaptureDocument::undo() { return history_.canUndo() ? changed(history_.undo()) : Status(); }

Status CaptureDocument::redo() { return history_.canRedo() ? changed(history_.redo()) : Status(); }

Status CaptureDocument::changed(Status status) {
    if (!status) return status;
    ++revision_;
    // An undone annotation cannot stay selected.
    if (selected_ != noAnnotation && content_.find(selected_) == nullptr) selectAnnotation(noAnnotation);
    DocumentChange change;
    change.state = true;
    announce(change);
    return status;
}

bool CaptureDocument::modified() const { return savedState_ != history_.state(); }

void CaptureDocument::markSaved() {
    savedState_ = history_.state();
    history_.endGesture();
    DocumentChange change;
    change.state = true;
    announce(change);
}

void CaptureDocument::select(Selection selection) {
    if (selection == selection_) return;
    DocumentChange change;
    change.selection = true;
    change.area = selection_.bounds(size());
    selection_ = std::move(selection);
    change.area = change.area.united(selection_.bounds(size()));
    announce(change);
}

void CaptureDocument::selectAnnotation(AnnotationId id) {
    if (content_.find(id) == nullptr) id = noAnnotation;
    if (id == selected_) return;
    DocumentChange change;
    change.selection = true;
    if (const TBBShape* former = selectedAnnotation()) change.area = former->bounds();
    selected_ = id;
    if (const TBBShape* shape = selectedAnnotation()) change.area = change.area.united(shape->bounds());
    announce(change);
}

int CaptureDocument::observe(Observer observer) {
    observers_.emplace_back(++lastObserver_, std::move(observer));
    return lastObserver_;
}

void CaptureDocument::forget(int observer) {
    std::erase_if(observers_, [observer](const auto& entry) { return entry.first == observer; });
}

void CaptureDocument::announce(const DocumentChange& change) {
    // A copy: an observer may leave while it is being called.
    const auto observers = observers_;
    for (const auto& entry : observers) entry.second(change);
}

}  // namespace glimmer
