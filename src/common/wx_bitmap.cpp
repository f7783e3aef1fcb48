#include "common/wx_bitmap.h"

#include <wx/rawbmp.h>

namespace glimmer {

wxBitmap wxBitmapOf(const TBitmap& picture) {
    wxBitmap bitmap;
    bitmap.Create(picture.width(), picture.height(), 24);
    wxNativePixelData data(bitmap);
    wxNativePixelData::Iterator to(data);
    for (int32_t y = 0; y < picture.height(); ++y) {
        to.MoveTo(data, 0, y);
        const uint8_t* from = picture.row(y);
        for (int32_t x = 0; x < picture.width(); ++x, ++to, from += picture.bytesPerPixel()) {
            to.Blue() = from[0];
            to.Green() = from[1];
            to.Red() = from[2];
        }
    }
    return bitmap;
}

}  // namespace glimmer
