#include "fuzz/png_checksums.h"

#include <zlib.h>

#include <algorithm>

#include "imaging/png_chunks.h"

void repairPngChecksums(std::span<uint8_t> data) {
    using namespace glimmer;
    // From the end, so that a file inside of another's chunk is right when the outer checksum is made.
    auto end = data.end();
    while (true) {
        const auto at = std::find_end(data.begin(), end, pngSignature.begin(), pngSignature.end());
        if (at == end) return;
        auto offset = static_cast<size_t>(at - data.begin()) + pngSignature.size();
        while (data.size() - offset >= 12) {
            const size_t length = bigEndian32(data.data() + offset);
            if (length > data.size() - offset - 12) break;
            const auto sum = crc32(0, data.data() + offset + 4, static_cast<uInt>(length + 4));
            offset += 8 + length;
            for (unsigned shift = 32; shift > 0; ++offset) {
                shift -= 8;
                data[offset] = static_cast<uint8_t>(sum >> shift);
            }
        }
        end = at;
    }
}
