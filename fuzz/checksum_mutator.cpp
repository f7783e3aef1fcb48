// For inputs with PNG files in them: changed anyhow, then the files' checksums are made right again.

#include "fuzz/png_checksums.h"

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t room, unsigned seed) {
    size = LLVMFuzzerMutate(data, size, room);
    if (seed % 8 != 0) repairPngChecksums({data, size});
    return size;
}
