#pragma once

#include "common/bitmap.h"
#include "common/colour.h"
#include "output/print/preview_view.h"
#include "output/print/print_sheets.h"

namespace glimmer {

/// Draws a sheet as it will be printed, at the scale of a view.
class PreviewPainter {
public:
    struct Look {
        Colour desk = 0x808080;  ///< around the sheet
        bool boundingBox = true;
        bool grayscale = false;
        Size focus{};                   ///< of a window with the focus, which gets a line around it
        int32_t handle = 3;             ///< half a handle's side, pixels
        const TBitmap* foot = nullptr;  ///< the foot line at any size; null: none
    };

    /// `reduced` is the whole picture of the layout at any smaller size; `target` has 32 bits.
    void paint(TBitmap& target, const PreviewView& view, const PrintLayout& layout, const PrintSheet& sheet,
               const TBitmap& reduced, const Look& look);

private:
    void paintPicture(TBitmap& target, const Rect& box, const Rect& clip, const PrintSheet& sheet, Size whole,
                      const TBitmap& reduced, bool grayscale);

    /// What was drawn last: moving it needs no new reduction.
    struct Drawn {
        const TBitmap* of = nullptr;
        Rect part;
        Size size;
        bool grayscale = false;
        bool operator==(const Drawn&) const = default;
    } drawn_;
    TBitmap picture_;
};

}  // namespace glimmer
