#pragma once

#include <cstddef>
#include <cstdint>

#include "common/bitmap.h"
#include "imaging/gaussian_kernel.h"

// The inner loops of the blur. How whole-number sums can be exactly the sums of the real weights is told in
// docs/imaging.md.

namespace glimmer {

/// A kernel made ready for sums in 32-bit integers. Its two sides are equal, so the taps come folded: tap k stands for
/// the sum of the values k steps to either side. Weight k is (high[k] * 65536 + low[k]) / 2^(16 + shift), exactly.
struct BlurTaps {
    static constexpr size_t maxPairs = largestKernel / 2 + 1;

    int32_t size = 1;
    size_t pairs = 1;  ///< taps two by two: 0 and 1, 2 and 3 and so on; beyond the last a weight of 0
    int32_t shift = 0;
    /// Each pair of weights as two 16-bit halves of a word (the even tap in the lower one), eight times over.
    alignas(32) int32_t high[maxPairs][8] = {};
    alignas(32) int32_t low[maxPairs][8] = {};
};

/// Brings a kernel into that form. False when its weights span too many binary digits (a radius below 0.4 or so).
bool makeBlurTaps(const TGaussianKernel& kernel, BlurTaps& taps);

/// For each i below `count`: out[i] = the integer part of the weighted sum of centre[i + k * step], k from -size to
/// size. The values are 0 to 255. Up to 16 values beyond the last are read as well, but nothing more is written.
using WeighFunction = void (*)(const BlurTaps& taps, const uint16_t* centre, ptrdiff_t step, uint8_t* out,
                               size_t count);
void weighSse2(const BlurTaps& taps, const uint16_t* centre, ptrdiff_t step, uint8_t* out, size_t count);
/// The same with instructions that not every processor has; see hasAvx2().
void weighAvx2(const BlurTaps& taps, const uint16_t* centre, ptrdiff_t step, uint8_t* out, size_t count);
bool hasAvx2();

/// GBlur with the inner loop given. The picture is a 24-bit one.
void blurWith(TBitmap& bitmap, double radius, WeighFunction weigh);

}  // namespace glimmer
