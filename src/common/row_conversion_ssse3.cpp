// Compiled for processors with SSSE3 and run on those only; nothing that other files might share is made here.

#include <tmmintrin.h>

#include "common/row_conversion.h"

namespace glimmer {

namespace {

/// Four pixels of four bytes in the first twelve bytes; the last four are 0.
__m128i narrowed(const uint8_t* from) {
    const __m128i order = _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
    return _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)), order);
}

void store(uint8_t* to, __m128i value) { _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value); }

}  // namespace

void narrowRowSsse3(uint8_t* to, const uint8_t* from, size_t count) {
    for (; count >= 16; count -= 16, from += 64, to += 48) {
        const __m128i a = narrowed(from);
        const __m128i b = narrowed(from + 16);
        const __m128i c = narrowed(from + 32);
        const __m128i d = narrowed(from + 48);
        store(to, _mm_or_si128(a, _mm_slli_si128(b, 12)));
        store(to + 16, _mm_or_si128(_mm_srli_si128(b, 4), _mm_slli_si128(c, 8)));
        store(to + 32, _mm_or_si128(_mm_srli_si128(c, 8), _mm_slli_si128(d, 4)));
    }
    for (; count > 0; --count, from += 4, to += 3) {
        to[0] = from[0];
        to[1] = from[1];
        to[2] = from[2];
    }
}

}  // namespace glimmer
