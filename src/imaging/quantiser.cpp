#include "imaging/quantiser.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace glimmer {

namespace {

/// Colours kept as they are: at most so many, and each must cover this part of the picture.
constexpr size_t maxKeptColours = 112;
constexpr uint32_t keptShare = 4000;

/// Different colours that are counted; a picture with more is a photograph, for which any quarter of a million do.
constexpr size_t maxCounted = size_t{1} << 18U;
constexpr size_t countSlots = maxCounted * 2;

/// Bits of each channel by which the nearest colours are remembered.
constexpr unsigned cellBits = 6;

/// An error beyond this is a palette colour that is far off; spreading it would put specks around it.
constexpr int32_t maxError = 40 * 16;

std::vector<ColourCount> countColours(const TBitmap& bitmap) {
    std::vector<ColourCount> table(countSlots);
    size_t used = 0;
    for (int32_t y = 0; y < bitmap.height(); ++y) {
        const uint8_t* p = bitmap.row(y);
        for (int32_t x = 0; x < bitmap.width(); ++x, p += 3) {
            const Pixel pixel = pixelFrom<PixelFormat::Bgr24>(p);
            size_t slot = (pixel * 0x9E3779B1U) >> (32U - static_cast<unsigned>(std::bit_width(countSlots - 1)));
            while (table[slot].count != 0 && table[slot].colour != pixel) slot = (slot + 1) % countSlots;
            if (table[slot].count == 0) {
                if (used == maxCounted) continue;
                ++used;
                table[slot].colour = pixel;
            }
            ++table[slot].count;
        }
    }
    std::erase_if(table, [](const ColourCount& one) { return one.count == 0; });
    // The second key makes the order, and so the file, independent of the table's.
    std::sort(table.begin(), table.end(), [](const ColourCount& a, const ColourCount& b) {
        return a.count != b.count ? a.count > b.count : a.colour < b.colour;
    });
    return table;
}

}  // namespace

Quantiser::Quantiser(const TBitmap& bitmap) : bitmap_(bitmap) {
    if (std::optional<ColourTable> own = exactPalette(bitmap)) {
        palette_ = *own;
        exact_ = true;
        return;
    }
    const std::vector<ColourCount> counts = countColours(bitmap);
    const uint64_t pixels = static_cast<uint64_t>(bitmap.width()) * static_cast<uint64_t>(bitmap.height());
    size_t kept = 0;
    while (kept < std::min(maxKeptColours, counts.size()) && counts[kept].count >= pixels / keptShare + 1)
        palette_.add(counts[kept++].colour);
    const std::span<const ColourCount> others = std::span(counts).subspan(kept);
    for (const Pixel colour : representatives(others, ColourTable::maxColours - kept)) palette_.add(colour);
    errors_.resize(static_cast<size_t>(bitmap.width()) + 2);
    nextErrors_.resize(errors_.size());
    nearest_.resize(size_t{1} << 3 * cellBits);
}

uint8_t Quantiser::nearest(unsigned blue, unsigned green, unsigned red) {
    constexpr unsigned drop = 8 - cellBits;
    uint16_t& known = nearest_[blue >> drop | green >> drop << cellBits | red >> drop << 2 * cellBits];
    if (known != 0) return static_cast<uint8_t>(known - 1);
    uint32_t best = std::numeric_limits<uint32_t>::max();
    size_t place = 0;
    const std::span<const Pixel> colours = palette_.colours();
    const auto squared = [](unsigned a, unsigned b) {
        const auto difference = static_cast<int32_t>(a) - static_cast<int32_t>(b);
        return static_cast<uint32_t>(difference * difference);
    };
    for (size_t i = 0; i < colours.size(); ++i) {
        // The eye's own weights for the three colours, roughly.
        const uint32_t distance = 2 * squared(blue, blueIn(colours[i])) + 6 * squared(green, greenIn(colours[i])) +
                                  3 * squared(red, redIn(colours[i]));
        if (distance >= best) continue;
        best = distance;
        place = i;
    }
    known = static_cast<uint16_t>(place + 1);
    return static_cast<uint8_t>(place);
}

void Quantiser::ditherRow(int32_t y, std::span<uint8_t> indices) {
    std::fill(nextErrors_.begin(), nextErrors_.end(), Error());
    const bool leftward = y % 2 != 0;
    const size_t width = indices.size();
    const uint8_t* row = bitmap_.row(y);
    for (size_t i = 0; i < width; ++i) {
        const size_t x = leftward ? width - 1 - i : i;
        const uint8_t* p = row + x * 3;
        if (const std::optional<uint8_t> own = palette_.find(pixelFrom<PixelFormat::Bgr24>(p))) {
            indices[x] = *own;
            continue;
        }
        const Error& error = errors_[x + 1];
        const auto wanted = [](uint8_t value, int32_t sixteenths) {
            return std::clamp(static_cast<int32_t>(value) + std::clamp(sixteenths, -maxError, maxError) / 16, 0, 255);
        };
        const int32_t blue = wanted(p[0], error.blue);
        const int32_t green = wanted(p[1], error.green);
        const int32_t red = wanted(p[2], error.red);
        const uint8_t place =
            nearest(static_cast<unsigned>(blue), static_cast<unsigned>(green), static_cast<unsigned>(red));
        indices[x] = place;
        const Pixel shown = palette_.colours()[place];
        const Error rest{blue - static_cast<int32_t>(blueIn(shown)), green - static_cast<int32_t>(greenIn(shown)),
                         red - static_cast<int32_t>(redIn(shown))};
        const auto spread = [&rest](Error& to, int32_t weight) {
            to.blue += rest.blue * weight;
            to.green += rest.green * weight;
            to.red += rest.red * weight;
        };
        const size_t ahead = leftward ? x : x + 2;
        const size_t behind = leftward ? x + 2 : x;
        spread(errors_[ahead], 7);
        spread(nextErrors_[behind], 3);
        spread(nextErrors_[x + 1], 5);
        spread(nextErrors_[ahead], 1);
    }
    std::swap(errors_, nextErrors_);
}

void Quantiser::nextRow(std::span<uint8_t> indices) {
    if (exact_)
        indexRow(bitmap_, y_, palette_, indices);
    else
        ditherRow(y_, indices);
    ++y_;
}

}  // namespace glimmer
