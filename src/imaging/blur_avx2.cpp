// Compiled for processors with AVX2; nothing here may run before hasAvx2() was asked, and nothing that other files
// might share (no inline function of a library) may be made here.

#include <immintrin.h>

#include "imaging/blur_kernel.h"

namespace glimmer {

namespace {

/// Both interleaving and packing work on the two halves of a vector apart, so the order comes out right.
struct Avx2 {
    using Type = __m256i;
    static constexpr size_t lanes = 16;

    static Type zero() { return _mm256_setzero_si256(); }
    static Type load(const uint16_t* from) { return _mm256_loadu_si256(reinterpret_cast<const Type*>(from)); }
    static Type add16(Type a, Type b) { return _mm256_add_epi16(a, b); }
    static Type add32(Type a, Type b) { return _mm256_add_epi32(a, b); }
    static Type interleaveLow(Type a, Type b) { return _mm256_unpacklo_epi16(a, b); }
    static Type interleaveHigh(Type a, Type b) { return _mm256_unpackhi_epi16(a, b); }
    static Type loadWeights(const int32_t* weights) {
        return _mm256_load_si256(reinterpret_cast<const Type*>(weights));
    }
    static Type multiplyAdd(Type pairs, Type weights) { return _mm256_madd_epi16(pairs, weights); }
    static Type integerPart(Type high, Type low, int32_t shift) {
        return _mm256_srl_epi32(_mm256_add_epi32(high, _mm256_srai_epi32(low, 16)), _mm_cvtsi32_si128(shift));
    }
    static void storeBytes(uint8_t* out, Type a, Type b) {
        const Type words = _mm256_packs_epi32(a, b);
        const __m128i bytes = _mm_packus_epi16(_mm256_castsi256_si128(words), _mm256_extracti128_si256(words, 1));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes);
    }
};

}  // namespace

void weighAvx2(const BlurTaps& taps, const uint16_t* centre, ptrdiff_t step, uint8_t* out, size_t count) {
    weighAll<Avx2>(taps, centre, step, out, count);
}

}  // namespace glimmer
