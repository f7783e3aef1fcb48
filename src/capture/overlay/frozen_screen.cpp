#include "capture/overlay/frozen_screen.h"

#include <cstring>
#include <utility>

namespace glimmer {

FrozenScreen::FrozenScreen(const TBitmap& picture, Point origin, DrawingSurface bright, DrawingSurface dark)
    : picture_(&picture), origin_(origin), bright_(std::move(bright)), dark_(std::move(dark)) {}

Result<FrozenScreen> FrozenScreen::create(const TBitmap& picture, Point origin) {
    Result<DrawingSurface> bright = DrawingSurface::create(picture.width(), picture.height());
    if (!bright) return bright.failure();
    Result<DrawingSurface> dark = DrawingSurface::create(picture.width(), picture.height());
    if (!dark) return dark.failure();
    const std::span<uint32_t> same = bright->pixels();
    const std::span<uint32_t> darker = dark->pixels();
    std::memcpy(same.data(), picture.bytes().data(), same.size_bytes());
    // Five eighths of each channel, all three at once.
    for (size_t i = 0; i < same.size(); ++i) darker[i] = (same[i] >> 1U & 0x7F7F7FU) + (same[i] >> 3U & 0x1F1F1FU);
    return FrozenScreen(picture, origin, bright.take(), dark.take());
}

}  // namespace glimmer
