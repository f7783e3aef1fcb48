#include "editor/commands/replace_pixels.h"

#include "editor/content.h"

namespace glimmer {

Status ReplacePixels::exchange(CaptureContent& content) {
    const Size size = other_.size();
    const Rect area{at_.x, at_.y, at_.x + size.width, at_.y + size.height};
    Result<TBitmap> former = content.picture().cropped(area);
    if (!former) return former.failure();
    Result<TBitmap> next = other_.take();
    if (!next) return next.failure();
    content.putPixels(at_, *next);
    other_ = PackedPixels(former.take());
    return {};
}

}  // namespace glimmer
