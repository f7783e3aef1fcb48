#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

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

}  // namespace glimmer
