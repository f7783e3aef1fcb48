#pragma once

#include <cstring>

#include "imaging/blur_taps.h"

// The inner loop of the blur for any width of vector. It is included by one source file for each set of instructions;
// `Vector` is a type of that file alone, so no code made for one processor is ever taken for another.

namespace glimmer {

/// The weighted sums of Vector::lanes neighbouring outputs, as bytes at `out`.
template <class Vector>
inline void weighOnce(const BlurTaps& taps, const uint16_t* centre, ptrdiff_t step, uint8_t* out) {
    using V = typename Vector::Type;
    // Two taps side by side in each 32-bit place, so that one multiplication-and-addition takes both.
    const V middle = Vector::load(centre);
    const V first = Vector::add16(Vector::load(centre - step), Vector::load(centre + step));
    V pairLow = Vector::interleaveLow(middle, first);
    V pairHigh = Vector::interleaveHigh(middle, first);
    V highA = Vector::multiplyAdd(pairLow, taps.high[0]);
    V highB = Vector::multiplyAdd(pairHigh, taps.high[0]);
    V lowA = Vector::multiplyAdd(pairLow, taps.low[0]);
    V lowB = Vector::multiplyAdd(pairHigh, taps.low[0]);
    const uint16_t* before = centre - 2 * step;
    const uint16_t* after = centre + 2 * step;
    const size_t whole = (static_cast<size_t>(taps.size) + 1) / 2;
    for (size_t pair = 1; pair < whole; ++pair) {
        const V even = Vector::add16(Vector::load(before), Vector::load(after));
        const V odd = Vector::add16(Vector::load(before - step), Vector::load(after + step));
        before -= 2 * step;
        after += 2 * step;
        pairLow = Vector::interleaveLow(even, odd);
        pairHigh = Vector::interleaveHigh(even, odd);
        highA = Vector::add32(highA, Vector::multiplyAdd(pairLow, taps.high[pair]));
        highB = Vector::add32(highB, Vector::multiplyAdd(pairHigh, taps.high[pair]));
        lowA = Vector::add32(lowA, Vector::multiplyAdd(pairLow, taps.low[pair]));
        lowB = Vector::add32(lowB, Vector::multiplyAdd(pairHigh, taps.low[pair]));
    }
    if (taps.pairs > whole) {
        const V even = Vector::add16(Vector::load(before), Vector::load(after));
        pairLow = Vector::interleaveLow(even, Vector::zero());
        pairHigh = Vector::interleaveHigh(even, Vector::zero());
        highA = Vector::add32(highA, Vector::multiplyAdd(pairLow, taps.high[whole]));
        highB = Vector::add32(highB, Vector::multiplyAdd(pairHigh, taps.high[whole]));
        lowA = Vector::add32(lowA, Vector::multiplyAdd(pairLow, taps.low[whole]));
        lowB = Vector::add32(lowB, Vector::multiplyAdd(pairHigh, taps.low[whole]));
    }
    Vector::storeBytes(out, Vector::integerPart(highA, lowA, taps.shift), Vector::integerPart(highB, lowB, taps.shift));
}

template <class Vector>
inline void weighAll(const BlurTaps& taps, const uint16_t* centre, ptrdiff_t step, uint8_t* out, size_t count) {
    size_t i = 0;
    for (; i + Vector::lanes <= count; i += Vector::lanes) weighOnce<Vector>(taps, centre + i, step, out + i);
    if (i == count) return;
    uint8_t rest[Vector::lanes];
    weighOnce<Vector>(taps, centre + i, step, rest);
    std::memcpy(out + i, rest, count - i);
}

}  // namespace glimmer
