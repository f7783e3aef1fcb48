#include "imaging/colour_table.h"

#include <algorithm>

namespace glimmer {

namespace {

template <PixelFormat format>
bool collect(const TBitmap& bitmap, ColourTable& palette) {
    constexpr size_t step = static_cast<size_t>(format) / 8;
    Pixel last = ~pixelFrom<format>(bitmap.row(0));
    for (int32_t y = 0; y < bitmap.height(); ++y) {
        const uint8_t* p = bitmap.row(y);
        const uint8_t* end = p + static_cast<size_t>(bitmap.width()) * step;
        for (; p != end; p += step) {
            const Pixel pixel = pixelFrom<format>(p);
            if (pixel == last) continue;
            last = pixel;
            if (!palette.add(pixel)) return false;
        }
    }
    return true;
}

template <PixelFormat format>
void writeIndices(const uint8_t* row, const ColourTable& palette, std::span<uint8_t> indices) {
    constexpr size_t step = static_cast<size_t>(format) / 8;
    Pixel last = pixelFrom<format>(row);
    uint8_t place = palette.find(last).value_or(0);
    for (uint8_t& index : indices) {
        const Pixel pixel = pixelFrom<format>(row);
        row += step;
        if (pixel != last) {
            last = pixel;
            place = palette.find(pixel).value_or(0);
        }
        index = place;
    }
}

}  // namespace

bool ColourTable::add(Pixel pixel) {
    size_t slot = slotOf(pixel);
    for (; places_[slot] != 0; slot = (slot + 1) % slots)
        if (colours_[places_[slot] - 1U] == pixel) return true;
    if (colours_.size() == maxColours) return false;
    colours_.push_back(pixel);
    places_[slot] = static_cast<uint16_t>(colours_.size());
    return true;
}

std::optional<uint8_t> ColourTable::find(Pixel pixel) const {
    for (size_t slot = slotOf(pixel); places_[slot] != 0; slot = (slot + 1) % slots)
        if (colours_[places_[slot] - 1U] == pixel) return static_cast<uint8_t>(places_[slot] - 1);
    return std::nullopt;
}

std::optional<ColourTable> exactPalette(const TBitmap& bitmap) {
    ColourTable found;
    if (bitmap.empty()) return found;
    const bool few = bitmap.format() == PixelFormat::Bgr24 ? collect<PixelFormat::Bgr24>(bitmap, found)
                                                           : collect<PixelFormat::Bgra32>(bitmap, found);
    if (!few) return std::nullopt;
    std::vector<Pixel> colours(found.colours().begin(), found.colours().end());
    std::stable_sort(colours.begin(), colours.end(), [](Pixel a, Pixel b) { return alphaIn(a) < alphaIn(b); });
    ColourTable sorted;
    for (const Pixel colour : colours) sorted.add(colour);
    return sorted;
}

void indexRow(const TBitmap& bitmap, int32_t y, const ColourTable& palette, std::span<uint8_t> indices) {
    if (bitmap.format() == PixelFormat::Bgr24)
        writeIndices<PixelFormat::Bgr24>(bitmap.row(y), palette, indices);
    else
        writeIndices<PixelFormat::Bgra32>(bitmap.row(y), palette, indices);
}

}  // namespace glimmer
