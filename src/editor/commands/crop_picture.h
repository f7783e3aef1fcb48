#pragma once

#include <vector>

#include "editor/annotations/shapes_list.h"
#include "editor/annotations/uShapes.h"
#include "editor/document/packed_pixels.h"
#include "editor/document/undo.h"

namespace glimmer {

/// The picture becomes the part inside `area`; annotations keep their place over the pixels. Those that lie wholly
/// outside go, since a saved file would still hold what nobody sees any more. What is cut off is kept as up to four
/// strips (above, below, left, right), deflated.
class CropPicture final : public UndoCommand {
public:
    /// `area` must lie inside the picture and not be empty.
    explicit CropPicture(const Rect& area) : area_(area) {}

    Status apply(CaptureContent& content) override;
    Status revert(CaptureContent& content) override;
    bool compactSome() override;
    [[nodiscard]] size_t byteCount() const override;

private:
    struct Strip {
        Point at;
        PackedPixels pixels;
    };
    Rect area_;
    Size former_;
    TShapesList annotations_;  ///< as they stood before; moving may have met a limit, too
    std::vector<Strip> strips_;
};

}  // namespace glimmer
