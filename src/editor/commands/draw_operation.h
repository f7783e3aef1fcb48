#pragma once

#include "editor/document/packed_pixels.h"
#include "editor/document/undo.h"
#include "imaging/pixel_operation.h"

namespace glimmer {

/// An operation on the selected pixels. Keeps only the other pixels of what it reaches (the former ones while it is
/// in effect, the new ones while it is undone), deflated.
class DrawOperation final : public UndoCommand {
public:
    explicit DrawOperation(TPixelOperation operation) : operation_(std::move(operation)) {}

    Status apply(CaptureContent& content) override;
    Status revert(CaptureContent& content) override;
    bool compactSome() override { return other_.packSome(); }
    [[nodiscard]] size_t byteCount() const override { return other_.byteCount(); }

private:
    Status exchange(CaptureContent& content);

    std::optional<TPixelOperation> operation_;  ///< until it was drawn for the first time
    Point at_;
    PackedPixels other_;
};

}  // namespace glimmer
