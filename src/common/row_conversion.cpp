#include "common/row_conversion.h"

#include <emmintrin.h>

#include <cstring>

namespace glimmer {

namespace {

__m128i load(const uint8_t* from) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from)); }
void store(uint8_t* to, __m128i value) { _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value); }

/// The first twelve bytes as four pixels of four bytes.
__m128i widened(__m128i packed, __m128i alpha) {
    const __m128i low = _mm_unpacklo_epi32(packed, _mm_srli_si128(packed, 3));
    const __m128i high = _mm_unpacklo_epi32(_mm_srli_si128(packed, 6), _mm_srli_si128(packed, 9));
    return _mm_or_si128(_mm_unpacklo_epi64(low, high), alpha);
}

/// The quickest way that this processor has.
NarrowFunction chooseNarrow() { return __builtin_cpu_supports("ssse3") != 0 ? narrowRowSsse3 : narrowRowSse2; }

/// Four pixels in the first twelve bytes; the last four are 0.
__m128i narrowed(__m128i pixels) {
    const __m128i first = _mm_and_si128(pixels, _mm_set1_epi64x(0xFFFFFF));
    const __m128i second = _mm_and_si128(_mm_srli_epi64(pixels, 8), _mm_set1_epi64x(0xFFFFFF000000));
    const __m128i pairs = _mm_or_si128(first, second);  // six bytes in each half
    const __m128i lowHalf = _mm_set_epi32(0, 0, -1, -1);
    return _mm_or_si128(_mm_and_si128(pairs, lowHalf), _mm_srli_si128(_mm_andnot_si128(lowHalf, pairs), 2));
}

}  // namespace

void widenRow(uint8_t* to, const uint8_t* from, size_t count) {
    const __m128i alpha = _mm_set1_epi32(static_cast<int>(0xFF000000U));
    // Sixteen pixels from three whole loads.
    for (; count >= 16; count -= 16, from += 48, to += 64) {
        const __m128i a = load(from);
        const __m128i b = load(from + 16);
        const __m128i c = load(from + 32);
        store(to, widened(a, alpha));
        store(to + 16, widened(_mm_or_si128(_mm_srli_si128(a, 12), _mm_slli_si128(b, 4)), alpha));
        store(to + 32, widened(_mm_or_si128(_mm_srli_si128(b, 8), _mm_slli_si128(c, 8)), alpha));
        store(to + 48, widened(_mm_srli_si128(c, 4), alpha));
    }
    for (; count > 0; --count, from += 3, to += 4) {
        std::memcpy(to, from, 3);
        to[3] = 255;
    }
}

void swapRedAndBlue(uint8_t* to, const uint8_t* from, size_t count) {
    const __m128i outer = _mm_set1_epi32(0x00FF00FF);
    constexpr int exchanged = 0xB1;  // the two words of each pixel
    for (; count >= 4; count -= 4, from += 16, to += 16) {
        const __m128i pixels = load(from);
        const __m128i moving = _mm_and_si128(pixels, outer);
        const __m128i moved = _mm_shufflehi_epi16(_mm_shufflelo_epi16(moving, exchanged), exchanged);
        store(to, _mm_or_si128(_mm_andnot_si128(outer, pixels), moved));
    }
    for (; count > 0; --count, from += 4, to += 4) {
        const uint8_t pixel[] = {from[2], from[1], from[0], from[3]};
        std::memcpy(to, pixel, sizeof pixel);
    }
}

void narrowRow(uint8_t* to, const uint8_t* from, size_t count) {
    static const NarrowFunction narrow = chooseNarrow();
    narrow(to, from, count);
}

void narrowRowSse2(uint8_t* to, const uint8_t* from, size_t count) {
    for (; count >= 16; count -= 16, from += 64, to += 48) {
        const __m128i a = narrowed(load(from));
        const __m128i b = narrowed(load(from + 16));
        const __m128i c = narrowed(load(from + 32));
        const __m128i d = narrowed(load(from + 48));
        store(to, _mm_or_si128(a, _mm_slli_si128(b, 12)));
        store(to + 16, _mm_or_si128(_mm_srli_si128(b, 4), _mm_slli_si128(c, 8)));
        store(to + 32, _mm_or_si128(_mm_srli_si128(c, 8), _mm_slli_si128(d, 4)));
    }
    for (; count > 0; --count, from += 4, to += 3) std::memcpy(to, from, 3);
}

}  // namespace glimmer
