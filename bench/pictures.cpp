#include <filesystem>
#include <random>

#include "common/files.h"
#include "harness.h"
#include "imaging/png_codec.h"
#include "support/paths.h"

namespace glimmer::bench {

namespace {

/// White, with boxes and lines of text-like strokes.
TBitmap drawnPage(Size size) {
    std::mt19937 random(1);
    const auto below = [&random](int32_t limit) {
        return static_cast<int32_t>(random() % static_cast<uint32_t>(limit));
    };
    TBitmap page = TBitmap::create(size.width, size.height, PixelFormat::Bgra32).take();
    page.fill(page.bounds(), rgb(255, 255, 255));
    for (int32_t y = 0; y < size.height; y += 120) {
        const int32_t x = below(size.width / 2);
        page.fill({x, y, x + below(size.width / 3), y + below(110)}, static_cast<Colour>(random() & 0xFFFFFFU));
    }
    for (int32_t y = 4; y + 12 < size.height; y += 18)
        for (int32_t x = 20; x < size.width - 20; x += 2 + below(5)) {
            const auto ink = static_cast<uint32_t>(below(120));
            page.fill({x, y + below(4), x + 1 + below(2), y + 6 + below(6)}, rgb(ink, ink, ink));
        }
    return page;
}

}  // namespace

TBitmap pagePicture(const std::string& name, Size size, PixelFormat format) {
    const auto file = readFile(std::filesystem::path(test::samplesFolder) / name, PngLimits::fileBytes);
    if (file) {
        Result<PngPicture> picture = readPng(*file);
        if (picture && picture->bitmap.size() == size) return picture->bitmap.converted(format).take();
    }
    return drawnPage(size).converted(format).take();
}

TBitmap noisePicture(Size size, PixelFormat format) {
    std::mt19937 random(2);
    TBitmap picture = TBitmap::create(size.width, size.height, format).take();
    for (uint8_t& value : picture.bytes()) value = static_cast<uint8_t>(random());
    return picture;
}

}  // namespace glimmer::bench
