#include <emmintrin.h>

#include "imaging/blur_kernel.h"

namespace glimmer {

namespace {

struct Sse2 {
    using Type = __m128i;
    static constexpr size_t lanes = 8;

    static Type zero() { return _mm_setzero_si128(); }
    static Type load(const uint16_t* from) { return _mm_loadu_si128(reinterpret_cast<const Type*>(from)); }
    static Type add16(Type a, Type b) { return _mm_add_epi16(a, b); }
    static Type add32(Type a, Type b) { return _mm_add_epi32(a, b); }
    static Type interleaveLow(Type a, Type b) { return _mm_unpacklo_epi16(a, b); }
    static Type interleaveHigh(Type a, Type b) { return _mm_unpackhi_epi16(a, b); }
    static Type loadWeights(const int32_t* weights) { return _mm_load_si128(reinterpret_cast<const Type*>(weights)); }
    static Type multiplyAdd(Type pairs, Type weights) { return _mm_madd_epi16(pairs, weights); }
    static Type integerPart(Type high, Type low, int32_t shift) {
        return _mm_srl_epi32(_mm_add_epi32(high, _mm_srai_epi32(low, 16)), _mm_cvtsi32_si128(shift));
    }
    static void storeBytes(uint8_t* out, Type a, Type b) {
        const Type words = _mm_packs_epi32(a, b);
        _mm_storel_epi64(reinterpret_cast<Type*>(out), _mm_packus_epi16(words, words));
    }
};

}  // namespace

void weighSse2(const BlurTaps& taps, const uint16_t* centre, ptrdiff_t step, uint8_t* out, size_t count) {
    weighAll<Sse2>(taps, centre, step, out, count);
}

}  // namespace glimmer
