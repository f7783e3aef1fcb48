#include "common/bitmap.h"
#include "fuzz/fuzz.h"

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
    glimmer::setPixelAllocator([](size_t count) -> std::unique_ptr<glimmer::PixelMemory> {
        constexpr size_t most = size_t{64} << 20U;
        return count > most ? nullptr : glimmer::heapPixelMemory(count);
    });
    return 0;
}
