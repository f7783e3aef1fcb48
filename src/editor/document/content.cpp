#include "editor/document/content.h"

#include <new>
#include <utility>

#include "common/assertion.h"

namespace glimmer {

CaptureContent::CaptureContent(TBitmap picture, CaptureInfo info, TShapesList annotations, Listener listener)
    : picture_(std::move(picture)),
      info_(std::move(info)),
      annotations_(std::move(annotations)),
      listener_(std::move(listener)) {}

const TBitmap& CaptureContent::picture() const {
    if (picture_.parked() && !picture_.wake()) throw std::bad_alloc();
    return picture_;
}

void CaptureContent::announceAnnotations(const Rect& area) {
    DocumentChange change;
    change.annotations = true;
    change.area = area;
    listener_(change);
}

void CaptureContent::drawOperation(const TPixelOperation& operation) {
    drawPixelOperation(&picture_, operation);
    DocumentChange change;
    change.pixels = true;
    change.area = operation.reach().intersected(picture_.bounds());
    listener_(change);
}

void CaptureContent::putPixels(Point at, const TBitmap& pixels) {
    static_cast<void>(picture());  // awake
    copyPixels(picture_, at, pixels);
    DocumentChange change;
    change.pixels = true;
    change.area = pixels.bounds().moved(at.x, at.y);
    listener_(change);
}

void CaptureContent::setPicture(TBitmap picture, Point shift) {
    DocumentChange change;
    change.pixels = change.size = change.annotations = true;
    picture_ = std::move(picture);
    annotations_.moveBy(shift.x, shift.y);
    change.area = picture_.bounds();
    listener_(change);
}

void CaptureContent::setAnnotations(TShapesList annotations) {
    const Rect before = annotations_.bounds();
    annotations_ = std::move(annotations);
    announceAnnotations(before.united(annotations_.bounds()));
}

AnnotationId CaptureContent::insertAnnotation(size_t index, TBBShape shape) {
    shape.settle();
    const Rect area = shape.bounds();
    const AnnotationId id = annotations_.insert(index, std::move(shape));
    announceAnnotations(area);
    return id;
}

void CaptureContent::removeAnnotation(AnnotationId id) {
    const TBBShape* shape = annotations_.find(id);
    GLIMMER_ASSERT(shape != nullptr, "pShape != NULL", "uEditor");
    const Rect area = shape->bounds();
    annotations_.remove(id);
    announceAnnotations(area);
}

void CaptureContent::replaceAnnotation(TBBShape shape) {
    TBBShape* target = annotations_.find(shape.id());
    GLIMMER_ASSERT(target != nullptr, "pShape != NULL", "uEditor");
    shape.settle();
    const Rect before = target->bounds();
    *target = std::move(shape);
    announceAnnotations(before.united(target->bounds()));
}

void CaptureContent::moveInOrder(AnnotationId id, size_t index) {
    const TBBShape* shape = annotations_.find(id);
    GLIMMER_ASSERT(shape != nullptr, "pShape != NULL", "uEditor");
    const Rect area = shape->bounds();
    annotations_.moveTo(id, index);
    announceAnnotations(area);
}

void CaptureContent::setInfo(CaptureInfo info) {
    info_ = std::move(info);
    DocumentChange change;
    change.info = true;
    listener_(change);
}

}  // namespace glimmer
