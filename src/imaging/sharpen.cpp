#include <algorithm>
#include <cmath>
#include <cstring>

#include "common/assertion.h"
#include "imaging/gblur2.h"

namespace glimmer {

namespace {

Status narrow(TBitmap& bitmap) {
    if (bitmap.format() == PixelFormat::Bgr24) return {};
    Result<TBitmap> result = bitmap.converted(PixelFormat::Bgr24);
    if (!result) return result.failure();
    bitmap = result.take();
    return {};
}

bool smallerThan3(const TBitmap& bitmap) { return bitmap.width() < 3 || bitmap.height() < 3; }

}  // namespace

Status Sharpen(TBitmap& source, TBitmap& destination, float alpha) {
    GLIMMER_ASSERT(!smallerThan3(source) && !smallerThan3(destination), "Bitmap must be at least 3x3", "gblur2");
    GLIMMER_ASSERT(alpha > 1 && alpha < 6, "Alpha must be >1 and <6", "gblur2");
    if (Status done = narrow(source); !done) return done;
    Result<TBitmap> copy = source.clone();
    if (!copy) return copy.failure();
    destination = copy.take();

    // 16 binary places; 32767 rounds the product.
    const auto strength = static_cast<int32_t>(std::lround(static_cast<double>(alpha) * 65536));
    const auto around = static_cast<int32_t>(std::lround((static_cast<double>(alpha) - 1) / 5 * 65536));
    const size_t last = (static_cast<size_t>(source.width()) - 1) * 3;
    for (int32_t y = 1; y < source.height() - 1; ++y) {
        const uint8_t* up = source.row(y - 1);
        const uint8_t* here = source.row(y);
        const uint8_t* down = source.row(y + 1);
        uint8_t* to = destination.row(y);
        for (size_t i = 3; i < last; ++i) {
            const int32_t sum = up[i] + here[i - 3] + here[i] + here[i + 3] + down[i];
            const int32_t value = ((here[i] * strength + 32767) >> 16) - ((sum * around + 32767) >> 16);
            to[i] = static_cast<uint8_t>(std::clamp(value, 0, 255));
        }
    }
    return {};
}

}  // namespace glimmer
