#include "imaging/graphutils.h"

#include <emmintrin.h>

#include <cstring>

#include "common/assertion.h"

namespace glimmer {

namespace {

__m128i load(const uint8_t* from) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from)); }
void store(uint8_t* to, __m128i value) { _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value); }

/// Calls `whole` for every sixteen bytes and, for what is left, with a copy of the rest in a buffer of sixteen.
template <class Change>
void changeBytes(uint8_t* bytes, size_t count, Change change) {
    for (; count >= 16; count -= 16, bytes += 16) store(bytes, change(load(bytes)));
    if (count == 0) return;
    uint8_t rest[16] = {};
    std::memcpy(rest, bytes, count);
    store(rest, change(load(rest)));
    std::memcpy(bytes, rest, count);
}

void requireWide(const TBitmap& bitmap) {
    GLIMMER_ASSERT(bitmap.format() == PixelFormat::Bgra32, "pBmp->PixelFormat == pf32bit", "graphutils");
}

/// (30 blue + 59 green + 11 red) of four pixels, a 32-bit word each.
__m128i greySums(__m128i pixels) {
    const __m128i low = _mm_set1_epi32(0x00FF00FF);
    const __m128i blueRed = _mm_madd_epi16(_mm_and_si128(pixels, low), _mm_set1_epi32(11 << 16 | 30));
    const __m128i green = _mm_madd_epi16(_mm_and_si128(_mm_srli_epi16(pixels, 8), low), _mm_set1_epi32(59));
    return _mm_add_epi32(blueRed, green);
}

/// Four pixels of grey. The division by 100 is (sum x 41944) >> 22, exact for sums up to 25500.
__m128i grey(__m128i pixels) {
    const __m128i sums = greySums(pixels);
    const __m128i value = _mm_srli_epi32(_mm_mulhi_epu16(sums, _mm_set1_epi32(41944)), 6);
    return _mm_or_si128(value, _mm_or_si128(_mm_slli_epi32(value, 8), _mm_slli_epi32(value, 16)));
}

constexpr uint32_t lineAlpha = 64;  ///< how much of the overlay shows, of 255

/// (overlay x 64 + value x 191 + 127) / 255 for eight 16-bit values; `term` is the part without the value.
__m128i mixed(__m128i values, __m128i term) {
    const __m128i sum = _mm_add_epi16(_mm_mullo_epi16(values, _mm_set1_epi16(255 - lineAlpha)), term);
    // sum / 255, exact for all 16-bit sums but 65535; they reach 61120
    const __m128i more = _mm_add_epi16(_mm_add_epi16(sum, _mm_set1_epi16(1)), _mm_srli_epi16(sum, 8));
    return _mm_srli_epi16(more, 8);
}

}  // namespace

void grayscale(TBitmap& bitmap) {
    requireWide(bitmap);
    changeBytes(bitmap.bytes().data(), bitmap.byteCount(), grey);
}

void invert(TBitmap& bitmap) {
    requireWide(bitmap);
    const __m128i colours = _mm_set1_epi32(0x00FFFFFF);
    const __m128i all = _mm_set1_epi32(-1);
    changeBytes(bitmap.bytes().data(), bitmap.byteCount(),
                [=](__m128i pixels) { return _mm_xor_si128(_mm_and_si128(pixels, colours), all); });
}

void interlace(TBitmap& bitmap) {
    const bool wide = bitmap.format() == PixelFormat::Bgra32;
    const __m128i kept = _mm_set1_epi32(wide ? static_cast<int>(0xFF000000U) : 0);
    const __m128i zero = _mm_setzero_si128();
    for (int32_t y = 0; y < bitmap.height(); ++y) {
        const uint32_t overlay = y % 2 == 0 ? 0 : 0xC0;
        const __m128i term = _mm_set1_epi16(static_cast<short>(overlay * lineAlpha + 127));
        changeBytes(bitmap.row(y), static_cast<size_t>(bitmap.width()) * bitmap.bytesPerPixel(), [=](__m128i pixels) {
            const __m128i changed = _mm_packus_epi16(mixed(_mm_unpacklo_epi8(pixels, zero), term),
                                                     mixed(_mm_unpackhi_epi8(pixels, zero), term));
            return _mm_or_si128(_mm_and_si128(kept, pixels), _mm_andnot_si128(kept, changed));
        });
    }
}

void takeColours(TBitmap& bitmap, const TBitmap& source) {
    const __m128i colours = _mm_set1_epi32(0x00FFFFFF);
    const uint8_t* from = source.bytes().data();
    uint8_t* to = bitmap.bytes().data();
    size_t count = bitmap.byteCount();
    const auto taken = [=](__m128i own, __m128i other) {
        return _mm_or_si128(_mm_andnot_si128(colours, own), _mm_and_si128(colours, other));
    };
    for (; count >= 16; count -= 16, from += 16, to += 16) store(to, taken(load(to), load(from)));
    for (; count > 0; count -= 4, from += 4, to += 4) std::memcpy(to, from, 3);
}

}  // namespace glimmer
