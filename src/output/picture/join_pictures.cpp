#include "output/picture/join_pictures.h"

#include <algorithm>

namespace glimmer {

Result<TBitmap> joinPictures(std::span<const TBitmap* const> pictures, JoinDirection direction, int32_t spacing) {
    if (pictures.empty() || spacing < 0) return Failure{"There are no images to concatenate."};
    const bool horizontal = direction == JoinDirection::Horizontally;
    int64_t along = static_cast<int64_t>(spacing) * static_cast<int64_t>(pictures.size() - 1);
    int64_t across = 0;
    for (const TBitmap* picture : pictures) {
        along += horizontal ? picture->width() : picture->height();
        across = std::max<int64_t>(across, horizontal ? picture->height() : picture->width());
    }
    const int64_t width = horizontal ? along : across;
    const int64_t height = horizontal ? across : along;
    if (Status fits = TBitmap::check(width, height, PixelFormat::Bgra32); !fits) return fits.failure();
    Result<TBitmap> joined =
        TBitmap::create(static_cast<int32_t>(width), static_cast<int32_t>(height), PixelFormat::Bgra32);
    if (!joined) return joined;
    joined->fill(joined->bounds(), rgb(255, 255, 255));

    Point at;
    for (const TBitmap* picture : pictures) {
        if (picture->format() == PixelFormat::Bgra32) {
            copyPixels(*joined, at, *picture);
        } else {
            const Result<TBitmap> converted = picture->converted(PixelFormat::Bgra32);
            if (!converted) return converted.failure();
            copyPixels(*joined, at, *converted);
        }
        (horizontal ? at.x : at.y) += (horizontal ? picture->width() : picture->height()) + spacing;
    }
    return joined;
}

}  // namespace glimmer
