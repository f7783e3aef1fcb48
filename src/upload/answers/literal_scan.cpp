#include "upload/answers/literal_scan.h"

#include <emmintrin.h>

#include <bit>
#include <cstdint>
#include <cstring>

namespace glimmer {

namespace {

__m128i load(const char* from) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from)); }

}  // namespace

size_t findLiteral(std::string_view text, std::string_view literal, size_t from) {
    constexpr size_t step = 16;
    const size_t last = literal.size() - 1;
    const __m128i firstByte = _mm_set1_epi8(literal.front());
    const __m128i lastByte = _mm_set1_epi8(literal.back());
    for (; from + last + step <= text.size(); from += step) {
        const char* place = text.data() + from;
        const __m128i equal =
            _mm_and_si128(_mm_cmpeq_epi8(load(place), firstByte), _mm_cmpeq_epi8(load(place + last), lastByte));
        for (auto found = static_cast<uint32_t>(_mm_movemask_epi8(equal)); found != 0; found &= found - 1) {
            const auto offset = static_cast<size_t>(std::countr_zero(found));
            if (std::memcmp(place + offset, literal.data(), literal.size()) == 0) return from + offset;
        }
    }
    return text.find(literal, from);
}

}  // namespace glimmer
