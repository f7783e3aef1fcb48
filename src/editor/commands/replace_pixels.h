#pragma once

#include "editor/packed_pixels.h"
#include "editor/undo.h"

namespace glimmer {

/// A pixel operation: the pixels of one rectangle become others. Keeps only that rectangle's other pixels (the
/// former ones while the change is in effect, the new ones while it is undone), deflated.
class ReplacePixels final : public UndoCommand {
public:
    /// `pixels`, 32 bits, go to `at`; they must lie inside the picture.
    ReplacePixels(Point at, TBitmap pixels) : at_(at), other_(std::move(pixels)) {}

    Status apply(CaptureContent& content) override { return exchange(content); }
    Status revert(CaptureContent& content) override { return exchange(content); }
    bool compactSome() override { return other_.packSome(); }
    [[nodiscard]] size_t byteCount() const override { return other_.byteCount(); }

private:
    Status exchange(CaptureContent& content);

    Point at_;
    PackedPixels other_;
};

}  // namespace glimmer
