// A bitmap that some program has put on the clipboard.

#include "fuzz/fuzz.h"
#include "imaging/clipboard_formats.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace glimmer;
    const Result<TBitmap> picture = pictureFromDib({data, size});
    FUZZ_CHECK(picture.ok() ? !picture->empty() : !picture.message().empty());
    constexpr size_t small = 100000;
    if (!picture || picture->byteCount() > small) return 0;
    // What was read can be put there again, and reads the same.
    const Result<std::vector<uint8_t>> plain = clipboardDib(*picture);
    const Result<std::vector<uint8_t>> shaded = clipboardDibV5(*picture);
    FUZZ_CHECK(plain.ok() && pictureFromDib(*plain).ok());
    FUZZ_CHECK(shaded.ok());
    const Result<TBitmap> again = pictureFromDib(*shaded);
    FUZZ_CHECK(again.ok() && samePixels(*again, *picture));
    return 0;
}
