// PNG files with their texts and private chunks, and what the editor makes of them.

#include "common/assertion.h"
#include "fuzz/fuzz.h"
#include "fuzz/painted.h"
#include "imaging/png_codec.h"
#include "output/files/editable_png.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace glimmer;
    const std::span<const uint8_t> file(data, size);
    const Result<size_t> length = measurePng(data, [&](const uint8_t* at, size_t count) {
        return static_cast<size_t>(at - data) <= size && count <= size - static_cast<size_t>(at - data);
    });
    if (length.ok()) FUZZ_CHECK(*length <= size);
    Result<PngPicture> picture = readPng(file);
    if (!picture) return 0;
    FUZZ_CHECK(length.ok());
    FUZZ_CHECK(picture->extras.texts.size() <= PngLimits::texts);
    // What was read can be written, and reads the same again.
    constexpr size_t smallPicture = 100000;
    if (picture->bitmap.byteCount() <= smallPicture) {
        const Result<std::vector<uint8_t>> again = encodePng(picture->bitmap, picture->extras);
        FUZZ_CHECK(again.ok());
        const Result<PngPicture> second = readPng(*again);
        FUZZ_CHECK(second.ok());
        FUZZ_CHECK(samePixels(second->bitmap, picture->bitmap));
        FUZZ_CHECK(second->extras.chunks == picture->extras.chunks);
        FUZZ_CHECK(second->extras.texts == picture->extras.texts);
    }
    const Result<OpenedPicture> opened = readEditablePng(file);
    FUZZ_CHECK(opened.ok());
    paintForFuzzer(opened->picture.shapes);
    return 0;
}
