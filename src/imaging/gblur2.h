#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "common/bitmap.h"

namespace glimmer {

/// Taps of a Gaussian kernel on each side of its centre: 1 to 100.
using TKernelSize = int32_t;
constexpr TKernelSize largestKernel = 100;

/// A Gaussian curve cut off where its tails together weigh less than half a grey level.
struct TGaussianKernel {
    TKernelSize size = 1;
    /// Weights of the taps -100 to +100. Only those from -size to +size count; they sum to 1, up to rounding.
    std::array<float, 2 * largestKernel + 1> weights{};

    /// Where the weight of a tap stands.
    static size_t place(int32_t tap) {
        const int32_t index = tap + largestKernel;
        return static_cast<size_t>(index);
    }
    [[nodiscard]] float weight(int32_t tap) const { return weights[place(tap)]; }
};

/// The kernel for a standard deviation of `radius` pixels, radius > 0.
TGaussianKernel makeGaussianKernel(double radius);

/// Blurs the picture in place: every row, then every column, each channel by itself. Beyond the edges the edge pixels
/// repeat. After each of the two passes the sums are truncated to bytes. A radius of 0 or less, or none (NaN), leaves
/// the picture alone.
/// Throws std::invalid_argument on anything but a 24-bit picture.
void GBlur(TBitmap& bitmap, double radius);

/// Writes a sharpened copy of `source` into `destination`, which takes its size; both become 24-bit pictures. The
/// outermost pixels are copied. `alpha`, above 1 and below 6, says how strongly. Pictures below 3 x 3 and an alpha out
/// of range are assertion failures. Fails when memory cannot be had.
Status Sharpen(TBitmap& source, TBitmap& destination, float alpha);

}  // namespace glimmer
