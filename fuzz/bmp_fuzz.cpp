#include "fuzz/fuzz.h"
#include "imaging/bmp_codec.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const glimmer::Result<glimmer::TBitmap> bitmap = glimmer::readBmp({data, size});
    FUZZ_CHECK(bitmap.ok() ? !bitmap->empty() : !bitmap.message().empty());
    return 0;
}
