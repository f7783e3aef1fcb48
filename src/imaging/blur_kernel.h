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
    V highA = Vector::multiplyAdd(pairLow, Vector::loadWeights(taps.high[0]));
    V highB = Vector::multiplyAdd(pairHigh, Vector::loadWeights(taps.high[0]));
    V lowA = Vector::multiplyAdd(pairLow, Vector::loadWeights(taps.low[0]));
    V lowB = Vector::multiplyAdd(pairHigh, Vector::loadWeights(taps.low[0]));
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
        highA = Vector::add32(highA, Vector::multiplyAdd(pairLow, Vector::loadWeights(taps.high[pair])));
        highB = Vector::add32(highB, Vector::multiplyAdd(pairHigh, Vector::loadWeights(taps.high[pair])));
        lowA = Vector::add32(lowA, Vector::multiplyAdd(pairLow, Vector::loadWeights(taps.low[pair])));
        lowB = Vector::add32(lowB, Vector::multiplyAdd(pairHigh, Vector::loadWeights(taps.low[pair])));
    }
    if (taps.pairs > whole) {
        const V even = Vector::add16(Vector::load(before), Vector::load(after));
        pairLow = Vector::interleaveLow(even, Vector::zero());
        pairHigh = Vector::interleaveHigh(even, Vector::zero());
        highA = Vector::add32(highA, Vector::multiplyAdd(pairLow, Vector::loadWeights(taps.high[whole])));
        highB = Vector::add32(highB, Vector::multiplyAdd(pairHigh, Vector::loadWeights(taps.high[whole])));
        lowA = Vector::add32(lowA, Vector::multiplyAdd(pairLow, Vector::loadWeights(taps.low[whole])));
        lowB = Vector::add32(lowB, Vector::multiplyAdd(pairHigh, Vector::loadWeights(taps.low[whole])));
    }
    Vector::storeBytes(out, Vector::integerPart(highA, lowA, taps.shift), Vector::integerPart(highB, lowB, taps.shift));
}

/// The same for a kernel whose size is known when this is compiled: everything unrolled, the weights in registers.
template <class Vector, size_t size>
inline void weighSmall(const BlurTaps& taps, const uint16_t* centre, ptrdiff_t step, uint8_t* out, size_t count) {
    using V = typename Vector::Type;
    constexpr size_t pairs = size / 2 + 1;
    const int32_t shift = taps.shift;
    V high[pairs];
    V low[pairs];
    for (size_t pair = 0; pair < pairs; ++pair) {
        high[pair] = Vector::loadWeights(taps.high[pair]);
        low[pair] = Vector::loadWeights(taps.low[pair]);
    }
    const auto both = [step](const uint16_t* at, size_t tap) {
        const ptrdiff_t way = static_cast<ptrdiff_t>(tap) * step;
        return Vector::add16(Vector::load(at - way), Vector::load(at + way));
    };
    const auto weighAt = [&](const uint16_t* at, uint8_t* to) {
        V highA = Vector::zero();
        V highB = Vector::zero();
        V lowA = Vector::zero();
        V lowB = Vector::zero();
        for (size_t pair = 0; pair < pairs; ++pair) {
            const V even = pair == 0 ? Vector::load(at) : both(at, pair * 2);
            const V odd = pair * 2 + 1 <= size ? both(at, pair * 2 + 1) : Vector::zero();
            const V pairLow = Vector::interleaveLow(even, odd);
            const V pairHigh = Vector::interleaveHigh(even, odd);
            highA = Vector::add32(highA, Vector::multiplyAdd(pairLow, high[pair]));
            highB = Vector::add32(highB, Vector::multiplyAdd(pairHigh, high[pair]));
            lowA = Vector::add32(lowA, Vector::multiplyAdd(pairLow, low[pair]));
            lowB = Vector::add32(lowB, Vector::multiplyAdd(pairHigh, low[pair]));
        }
        Vector::storeBytes(to, Vector::integerPart(highA, lowA, shift), Vector::integerPart(highB, lowB, shift));
    };
    size_t i = 0;
    for (; i + Vector::lanes <= count; i += Vector::lanes) weighAt(centre + i, out + i);
    if (i == count) return;
    uint8_t rest[Vector::lanes];
    weighAt(centre + i, rest);
    std::memcpy(out + i, rest, count - i);
}

template <class Vector>
inline void weighAll(const BlurTaps& taps, const uint16_t* centre, ptrdiff_t step, uint8_t* out, size_t count) {
    switch (taps.size) {
        case 1:
            return weighSmall<Vector, 1>(taps, centre, step, out, count);
        case 2:
            return weighSmall<Vector, 2>(taps, centre, step, out, count);
        case 3:
            return weighSmall<Vector, 3>(taps, centre, step, out, count);
        case 4:
            return weighSmall<Vector, 4>(taps, centre, step, out, count);
        case 5:
            return weighSmall<Vector, 5>(taps, centre, step, out, count);
        case 6:
            return weighSmall<Vector, 6>(taps, centre, step, out, count);
        case 7:
            return weighSmall<Vector, 7>(taps, centre, step, out, count);
        case 8:
            return weighSmall<Vector, 8>(taps, centre, step, out, count);
        default:
            break;
    }
    size_t i = 0;
    for (; i + Vector::lanes <= count; i += Vector::lanes) weighOnce<Vector>(taps, centre + i, step, out + i);
    if (i == count) return;
    uint8_t rest[Vector::lanes];
    weighOnce<Vector>(taps, centre + i, step, rest);
    std::memcpy(out + i, rest, count - i);
}

}  // namespace glimmer
