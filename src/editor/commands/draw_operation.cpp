#include "editor/commands/draw_operation.h"

#include "editor/document/content.h"

namespace glimmer {

Status DrawOperation::apply(CaptureContent& content) {
    if (!operation_) return exchange(content);
    const Rect reach = operation_->reach().intersected(content.picture().bounds());
    Result<TBitmap> former = content.picture().cropped(reach);
    if (!former) return former.failure();
    content.drawOperation(*operation_);
    operation_.reset();
    at_ = {reach.left, reach.top};
    other_ = PackedPixels(former.take());
    return {};
}

Status DrawOperation::revert(CaptureContent& content) { return exchange(content); }

Status DrawOperation::exchange(CaptureContent& content) {
    const Size size = other_.size();
    Result<TBitmap> now = content.picture().cropped({at_.x, at_.y, at_.x + size.width, at_.y + size.height});
    if (!now) return now.failure();
    Result<TBitmap> next = other_.take();
    if (!next) return next.failure();
    content.putPixels(at_, *next);
    other_ = PackedPixels(now.take());
    return {};
}

}  // namespace glimmer
