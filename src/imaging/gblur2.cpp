// The kernel, and the two passes of the blur over a picture. Both passes hand lines of 16-bit values to one inner loop
// (blur_kernel.h): along a row neighbours are 3 values apart, down the columns one line of a strip apart. A strip is a
// band of columns so narrow that all the lines under the kernel stay in the processor's nearest memory.
//
// Page captures are mostly flat. Where all values under the kernel are the same there is nothing to add up: the result
// is that value times the sum of the weights, which is 1 up to rounding, so it is the value or one less.

#include "imaging/gblur2.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "imaging/blur_taps.h"

namespace glimmer {

namespace {

constexpr size_t block = 64;  ///< values that are flat or not together
constexpr size_t lane = 16;   ///< bytes that one instruction takes
constexpr size_t channels = 3;

__m128i load(const uint8_t* from) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from)); }

/// Whether two runs of bytes, at most a block, are the same.
bool equalBlocks(const uint8_t* a, const uint8_t* b, size_t count) {
    if (count != block) return std::memcmp(a, b, count) == 0;
    __m128i same = _mm_cmpeq_epi8(load(a), load(b));
    for (size_t i = lane; i < block; i += lane) same = _mm_and_si128(same, _mm_cmpeq_epi8(load(a + i), load(b + i)));
    return _mm_movemask_epi8(same) == 0xFFFF;
}

/// Bytes to 16-bit values.
void widenBytes(uint16_t* to, const uint8_t* from, size_t count) {
    const __m128i zero = _mm_setzero_si128();
    for (; count >= lane; count -= lane, from += lane, to += lane) {
        const __m128i bytes = load(from);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_unpacklo_epi8(bytes, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to) + 1, _mm_unpackhi_epi8(bytes, zero));
    }
    for (; count > 0; --count) *to++ = *from++;
}

/// The literal sum, for the few kernels that whole numbers cannot hold; they have three taps.
void weighPlainly(const TGaussianKernel& kernel, const uint16_t* centre, ptrdiff_t step, uint8_t* out, size_t count) {
    for (size_t i = 0; i < count; ++i) {
        double sum = 0;
        for (int32_t tap = -kernel.size; tap <= kernel.size; ++tap)
            sum += static_cast<double>(kernel.weight(tap)) * centre[static_cast<ptrdiff_t>(i) - tap * step];
        out[i] = static_cast<uint8_t>(static_cast<int32_t>(sum));
    }
}

/// One kernel with its inner loop and its answer for flat areas.
class Blur {
public:
    Blur(double radius, WeighFunction weigh) : kernel_(makeGaussianKernel(radius)), weigh_(weigh) {
        whole_ = makeBlurTaps(kernel_, taps_);
        double sum = 0;
        for (int32_t tap = -kernel_.size; tap <= kernel_.size; ++tap) sum += static_cast<double>(kernel_.weight(tap));
        flatLoss_ = sum < 1 ? 1 : 0;
    }
    void rows(TBitmap& bitmap) const;
    void columns(TBitmap& bitmap) const;

private:
    [[nodiscard]] size_t size() const { return static_cast<size_t>(kernel_.size); }
    void strip(TBitmap& bitmap, size_t left, size_t width) const;
    void weigh(const uint16_t* centre, ptrdiff_t step, uint8_t* out, size_t count) const {
        if (whole_)
            weigh_(taps_, centre, step, out, count);
        else
            weighPlainly(kernel_, centre, step, out, count);
    }
    /// Writes one line of results; flat(b) says whether everything under the kernel is the same for block b, in which
    /// case `values` are those it replaces.
    template <class Flat>
    void line(const uint16_t* centre, ptrdiff_t step, uint8_t* values, size_t count, Flat flat) const {
        for (size_t start = 0; start < count;) {
            size_t end = start;
            while (end < count && !flat(end / block)) end += block;
            if (end > start) weigh(centre + start, step, values + start, std::min(end, count) - start);
            for (; end < count && flat(end / block); end += block) lessen(values + end, std::min(block, count - end));
            start = end;
        }
    }
    void lessen(uint8_t* values, size_t count) const {
        if (flatLoss_ == 0) return;
        for (size_t i = 0; i < count; ++i) values[i] = static_cast<uint8_t>(values[i] - (values[i] > 0 ? 1 : 0));
    }

    TGaussianKernel kernel_;
    WeighFunction weigh_;
    BlurTaps taps_;
    bool whole_ = false;
    uint8_t flatLoss_ = 0;
};

void Blur::rows(TBitmap& bitmap) const {
    const size_t count = static_cast<size_t>(bitmap.width()) * channels;
    const size_t margin = size() * channels;
    std::vector<uint16_t> values(count + 2 * margin + 2 * lane);
    // Up to each block: how many blocks hold a byte that differs from the one a pixel before it.
    std::vector<uint32_t> changes(count / block + 2);
    for (int32_t y = 0; y < bitmap.height(); ++y) {
        uint8_t* row = bitmap.row(y);
        uint16_t* first = values.data() + margin;
        widenBytes(first, row, count);
        for (size_t i = 0; i < margin; ++i) {
            first[static_cast<ptrdiff_t>(i) - static_cast<ptrdiff_t>(margin)] = row[i % channels];
            first[count + i] = row[count - channels + i % channels];
        }
        for (size_t b = 0; b * block < count; ++b) {
            const size_t start = std::max(b * block, channels);
            const size_t end = std::min((b + 1) * block, count);
            const bool same = end <= start || equalBlocks(row + start, row + start - channels, end - start);
            changes[b + 1] = changes[b] + (same ? 0 : 1);
        }
        line(first, channels, row, count, [&](size_t b) {
            const size_t from = b * block < margin ? 0 : (b * block - margin) / block;
            const size_t to = std::min((b + 1) * block + margin, count) - 1;
            return changes[to / block + 1] == changes[from];
        });
    }
}

void Blur::strip(TBitmap& bitmap, size_t left, size_t width) const {
    const int32_t height = bitmap.height();
    const size_t span = 2 * size() + 1;
    const size_t lineLength = (width + lane - 1) / lane * lane + lane;
    const size_t capacity = span + 128;
    std::vector<uint16_t> lines(capacity * lineLength);
    std::vector<uint32_t> unchanged((width + block - 1) / block);  // lines in a row that equal the one before
    size_t used = 0;
    const auto take = [&](int32_t y) {
        const uint8_t* from = bitmap.row(std::clamp(y, 0, height - 1)) + left;
        const uint8_t* before = bitmap.row(std::clamp(y - 1, 0, height - 1)) + left;
        if (used == capacity) {
            used = span - 1;
            std::memmove(lines.data(), lines.data() + (capacity - used) * lineLength,
                         used * lineLength * sizeof(uint16_t));
        }
        widenBytes(lines.data() + used * lineLength, from, width);
        ++used;
        for (size_t b = 0; b < unchanged.size(); ++b) {
            const size_t length = std::min(block, width - b * block);
            const bool same = equalBlocks(from + b * block, before + b * block, length);
            unchanged[b] = same ? unchanged[b] + 1 : 0;
        }
    };
    for (int32_t y = -kernel_.size; y < kernel_.size; ++y) take(y);
    for (int32_t y = 0; y < height; ++y) {
        take(y + kernel_.size);
        const uint16_t* centre = lines.data() + (used - 1 - size()) * lineLength;
        line(centre, static_cast<ptrdiff_t>(lineLength), bitmap.row(y) + left, width,
             [&](size_t b) { return unchanged[b] >= 2 * size(); });
    }
}

void Blur::columns(TBitmap& bitmap) const {
    constexpr size_t nearMemory = 32768;  // bytes; what the smallest processors have
    const size_t count = static_cast<size_t>(bitmap.width()) * channels;
    const size_t width = std::clamp(nearMemory / (2 * (2 * size() + 1)) / 64 * 64, size_t{64}, size_t{1024});
    for (size_t left = 0; left < count; left += width) strip(bitmap, left, std::min(width, count - left));
}

}  // namespace

TGaussianKernel makeGaussianKernel(double radius) {
    constexpr double maxData = 255;
    constexpr double granularity = 1;
    TGaussianKernel kernel;
    double sum = 0;
    for (int32_t tap = -largestKernel; tap <= largestKernel; ++tap) {
        const double distance = tap / radius;
        const auto weight = static_cast<float>(std::exp(-(distance * distance) / 2));
        kernel.weights[TGaussianKernel::place(tap)] = weight;
        sum += static_cast<double>(weight);
    }
    for (float& weight : kernel.weights) weight = static_cast<float>(static_cast<double>(weight) / sum);

    constexpr double least = granularity / (2 * maxData);
    double tails = 0;
    kernel.size = largestKernel;
    while (tails < least && kernel.size >= 2) {
        tails += 2 * static_cast<double>(kernel.weight(kernel.size));
        --kernel.size;
    }
    sum = 0;
    for (int32_t tap = -kernel.size; tap <= kernel.size; ++tap) sum += static_cast<double>(kernel.weight(tap));
    for (int32_t tap = -kernel.size; tap <= kernel.size; ++tap) {
        float& weight = kernel.weights[TGaussianKernel::place(tap)];
        weight = static_cast<float>(static_cast<double>(weight) / sum);
    }
    return kernel;
}

bool makeBlurTaps(const TGaussianKernel& kernel, BlurTaps& taps) {
    // Every weight is a whole number of 2^-digits.
    int digits = 0;
    for (int32_t k = 0; k <= kernel.size; ++k) {
        int exponent = 0;
        if (kernel.weight(k) > 0) std::frexp(kernel.weight(k), &exponent);
        digits = std::max(digits, 24 - exponent);
    }
    if (digits < 16 || digits > 38) return false;
    taps.size = kernel.size;
    taps.pairs = static_cast<size_t>(kernel.size) / 2 + 1;
    taps.shift = digits - 16;
    double highs = 0;
    for (int32_t k = 0; k <= kernel.size; ++k) {
        const auto whole = static_cast<int64_t>(std::ldexp(static_cast<double>(kernel.weight(k)), digits));
        const int64_t high = (whole + 0x8000) >> 16;
        const int64_t low = whole - high * 0x10000;  // -32768 to 32767
        if (high > INT16_MAX) return false;
        highs += static_cast<double>(high) * (k == 0 ? 1 : 2);
        const auto place = static_cast<size_t>(k / 2);
        const uint32_t half = k % 2 == 0 ? 0 : 16;
        for (size_t copy = 0; copy < 8; ++copy) {
            taps.high[place][copy] |= static_cast<int32_t>(static_cast<uint32_t>(high) << half);
            taps.low[place][copy] |= static_cast<int32_t>((static_cast<uint32_t>(low) & 0xFFFFU) << half);
        }
    }
    // 255 times all low halves stays in 31 bits by itself: there are at most 201 of 32768.
    return highs * 255 + 0x8000 < INT32_MAX;
}

bool hasAvx2() { return __builtin_cpu_supports("avx2") != 0; }

void blurWith(TBitmap& bitmap, double radius, WeighFunction weigh) {
    if (!(radius > 0) || bitmap.empty()) return;
    const Blur blur(radius, weigh);
    blur.rows(bitmap);
    blur.columns(bitmap);
}

void GBlur(TBitmap& bitmap, double radius) {
    if (bitmap.format() != PixelFormat::Bgr24)
        throw std::invalid_argument("GBlur может работать только с 24-битными изображениями");
    blurWith(bitmap, radius, hasAvx2() ? weighAvx2 : weighSse2);
}

}  // namespace glimmer
