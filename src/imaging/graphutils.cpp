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

/// 30 blue + 59 green + 11 red of four pixels, a 32-bit word each.
__m128i greySums(__m128i pixels) {
    const __m128i blueRed = _mm_and_si128(pixels, _mm_set1_epi32(0x00FF00FF));
    const __m128i greenAlpha = _mm_srli_epi16(pixels, 8);  // the alpha weighs nothing
    return _mm_add_epi32(_mm_madd_epi16(blueRed, _mm_set1_epi32(11 << 16 | 30)),
                         _mm_madd_epi16(greenAlpha, _mm_set1_epi32(59)));
}

/// Eight pixels made grey, in place.
void makeGrey(uint8_t* pixels) {
    const __m128i sums = _mm_packs_epi32(greySums(load(pixels)), greySums(load(pixels + 16)));
    // The division by 100 is (sum x 41944) >> 22, exact for sums up to 25500.
    const __m128i grey = _mm_srli_epi16(_mm_mulhi_epu16(sums, _mm_set1_epi16(static_cast<short>(41944))), 6);
    const __m128i twice = _mm_or_si128(grey, _mm_slli_epi16(grey, 8));
    store(pixels, _mm_unpacklo_epi16(twice, grey));
    store(pixels + 16, _mm_unpackhi_epi16(twice, grey));
}

constexpr uint32_t lineAlpha = 64;  ///< how much of the overlay shows, of 255

/// (overlay x 64 + value x 191 + 127) / 255 for eight values, each in the upper byte of its word. Calculated with eight
/// binary places; 49088 is 191 / 255 of 65536 and the term the overlay's share with its rounding, which comes out right
/// for every value.
__m128i mixed(__m128i values, __m128i term) {
    return _mm_srli_epi16(_mm_add_epi16(_mm_mulhi_epu16(values, _mm_set1_epi16(static_cast<short>(49088))), term), 8);
}

/// Lays the overlay over a row of pixels; a fourth byte stays.
template <bool wide>
void interlaceRow(uint8_t* row, size_t count, uint32_t overlay) {
    const __m128i kept = _mm_set1_epi32(static_cast<int>(0xFF000000U));
    const __m128i zero = _mm_setzero_si128();
    const __m128i term = _mm_set1_epi16(static_cast<short>(overlay * lineAlpha * 256 / 255 + 128));
    changeBytes(row, count, [=](__m128i pixels) {
        const __m128i changed = _mm_packus_epi16(mixed(_mm_unpacklo_epi8(zero, pixels), term),
                                                 mixed(_mm_unpackhi_epi8(zero, pixels), term));
        if constexpr (wide) return _mm_or_si128(_mm_and_si128(kept, pixels), _mm_andnot_si128(kept, changed));
        return changed;
    });
}

}  // namespace

void grayscale(TBitmap& bitmap) {
    requireWide(bitmap);
    uint8_t* pixels = bitmap.bytes().data();
    size_t count = bitmap.byteCount();
    for (; count >= 32; count -= 32, pixels += 32) makeGrey(pixels);
    uint8_t rest[32] = {};
    std::memcpy(rest, pixels, count);
    makeGrey(rest);
    std::memcpy(pixels, rest, count);
}

void invert(TBitmap& bitmap) {
    requireWide(bitmap);
    const __m128i colours = _mm_set1_epi32(0x00FFFFFF);
    const __m128i all = _mm_set1_epi32(-1);
    changeBytes(bitmap.bytes().data(), bitmap.byteCount(),
                [=](__m128i pixels) { return _mm_xor_si128(_mm_and_si128(pixels, colours), all); });
}

void interlace(TBitmap& bitmap) {
    const size_t count = static_cast<size_t>(bitmap.width()) * bitmap.bytesPerPixel();
    for (int32_t y = 0; y < bitmap.height(); ++y) {
        const uint32_t overlay = y % 2 == 0 ? 0 : 0xC0;
        if (bitmap.format() == PixelFormat::Bgra32)
            interlaceRow<true>(bitmap.row(y), count, overlay);
        else
            interlaceRow<false>(bitmap.row(y), count, overlay);
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
