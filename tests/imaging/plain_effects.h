#pragma once

#include <cmath>
#include <vector>

#include "common/bitmap.h"

// The effects as they are defined, step by step and without any haste: what the fast versions are held against.

namespace glimmer::plain {

struct Kernel {
    int size;
    std::vector<float> weights;  ///< -100 to +100
    [[nodiscard]] float at(int j) const { return weights[static_cast<size_t>(j + 100)]; }
};

inline Kernel kernelOf(double radius) {
    Kernel kernel{100, std::vector<float>(201)};
    for (int j = -100; j <= 100; ++j)
        kernel.weights[static_cast<size_t>(j + 100)] = static_cast<float>(std::exp(-(j / radius) * (j / radius) / 2));
    const auto divide = [&kernel](int size) {
        double sum = 0;
        for (int j = -size; j <= size; ++j) sum += static_cast<double>(kernel.at(j));
        for (int j = -size; j <= size; ++j) {
            float& weight = kernel.weights[static_cast<size_t>(j + 100)];
            weight = static_cast<float>(static_cast<double>(weight) / sum);
        }
    };
    divide(100);
    double dropped = 0;
    int j = 100;
    while (dropped < 1.0 / (2 * 255) && j >= 2) {
        dropped += 2 * static_cast<double>(kernel.at(j));
        --j;
    }
    kernel.size = j;
    divide(j);
    return kernel;
}

/// `line` and `temporary` hold n + 1 pixels of three bytes.
inline void blurLine(const Kernel& kernel, std::vector<uint8_t>& line, std::vector<uint8_t>& temporary, int n) {
    for (int i = 0; i <= n; ++i) {
        double blue = 0;
        double green = 0;
        double red = 0;
        for (int j = -kernel.size; j <= kernel.size; ++j) {
            const auto k = static_cast<size_t>(std::min(std::max(i - j, 0), n)) * 3;
            const auto weight = static_cast<double>(kernel.at(j));
            blue += weight * line[k];
            green += weight * line[k + 1];
            red += weight * line[k + 2];
        }
        const auto at = static_cast<size_t>(i) * 3;
        temporary[at] = static_cast<uint8_t>(static_cast<int>(blue));
        temporary[at + 1] = static_cast<uint8_t>(static_cast<int>(green));
        temporary[at + 2] = static_cast<uint8_t>(static_cast<int>(red));
    }
    for (size_t i = 0; i < (static_cast<size_t>(n) + 1) * 3; ++i) line[i] = temporary[i];
}

inline void blur(TBitmap& bitmap, double radius) {
    const Kernel kernel = kernelOf(radius);
    const auto width = static_cast<size_t>(bitmap.width()) * 3;
    const auto height = static_cast<size_t>(bitmap.height());
    std::vector<uint8_t> line(std::max(width, height * 3));
    std::vector<uint8_t> temporary(line.size());
    for (int32_t y = 0; y < bitmap.height(); ++y) {
        std::copy(bitmap.row(y), bitmap.row(y) + width, line.begin());
        blurLine(kernel, line, temporary, bitmap.width() - 1);
        std::copy(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(width), bitmap.row(y));
    }
    for (size_t x = 0; x < width; x += 3) {
        for (size_t y = 0; y < height; ++y)
            std::copy(bitmap.row(static_cast<int32_t>(y)) + x, bitmap.row(static_cast<int32_t>(y)) + x + 3,
                      line.begin() + static_cast<std::ptrdiff_t>(y) * 3);
        blurLine(kernel, line, temporary, bitmap.height() - 1);
        for (size_t y = 0; y < height; ++y)
            for (size_t c = 0; c < 3; ++c) bitmap.row(static_cast<int32_t>(y))[x + c] = line[y * 3 + c];
    }
}

}  // namespace glimmer::plain
