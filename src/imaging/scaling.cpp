// Resizing goes down the picture first and then along the rows. For each new row the source rows that it covers are
// added up, weighted, into one row of single-precision sums; that row is then weighted together along itself. A
// large reduction is nearly all adding up of rows that count in full, so those are summed as 16-bit integers, which
// runs at the speed of reading the picture.

#include "imaging/scaling.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace glimmer {

namespace {

/// What one new pixel (or row) takes from the old ones: weights for `first` and those after it, which sum to 1.
struct Share {
    int32_t first = 0;
    std::vector<float> weights;
};

Share areaShare(int32_t from, int32_t to, int32_t i) {
    const double scale = static_cast<double>(from) / to;
    const double begin = i * scale;
    const double end = std::min<double>(from, (i + 1) * scale);
    Share share;
    share.first = static_cast<int32_t>(begin);
    for (int32_t k = share.first; k < from && k < end; ++k) {
        const double part = std::min(end, k + 1.0) - std::max(begin, static_cast<double>(k));
        share.weights.push_back(static_cast<float>(part / (end - begin)));
    }
    return share;
}

Share linearShare(int32_t from, int32_t to, int32_t i) {
    const double place = std::clamp((i + 0.5) * from / to - 0.5, 0.0, from - 1.0);
    const int32_t first = std::min(static_cast<int32_t>(place), std::max(from - 2, 0));
    const auto second = static_cast<float>(place - first);
    if (from == 1) return {0, {1.0F}};
    return {first, {1 - second, second}};
}

std::vector<Share> shares(int32_t from, int32_t to) {
    std::vector<Share> all;
    all.reserve(static_cast<size_t>(to));
    for (int32_t i = 0; i < to; ++i) all.push_back(to < from ? areaShare(from, to, i) : linearShare(from, to, i));
    return all;
}

/// sums[i] += a[i] + b[i]; the caller keeps them below 65536. Whole blocks of 16; the rest singly.
void addTwoRows(uint16_t* sums, const uint8_t* a, const uint8_t* b, size_t count) {
    const __m128i zero = _mm_setzero_si128();
    size_t i = 0;
    for (; i + 16 <= count; i += 16) {
        const __m128i p = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a + i));
        const __m128i q = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i));
        auto* low = reinterpret_cast<__m128i*>(sums + i);
        auto* high = reinterpret_cast<__m128i*>(sums + i + 8);
        const __m128i lows = _mm_add_epi16(_mm_unpacklo_epi8(p, zero), _mm_unpacklo_epi8(q, zero));
        const __m128i highs = _mm_add_epi16(_mm_unpackhi_epi8(p, zero), _mm_unpackhi_epi8(q, zero));
        _mm_storeu_si128(low, _mm_add_epi16(_mm_loadu_si128(low), lows));
        _mm_storeu_si128(high, _mm_add_epi16(_mm_loadu_si128(high), highs));
    }
    for (; i < count; ++i) sums[i] = static_cast<uint16_t>(sums[i] + a[i] + b[i]);
}

/// Whether some pixel of the part is not opaque. Takes whole pixels, which the compiler handles several at a time.
bool hasTransparency(const TBitmap& picture, const Rect& part) {
    if (picture.format() == PixelFormat::Bgr24) return false;
    for (int32_t y = part.top; y < part.bottom; ++y) {
        const uint8_t* p = picture.row(y) + static_cast<size_t>(part.left) * 4;
        uint32_t all = ~0U;
        for (int32_t x = 0; x < part.width(); ++x) {
            uint32_t pixel = 0;
            std::memcpy(&pixel, p + static_cast<size_t>(x) * 4, 4);
            all &= pixel;
        }
        if (all >> 24U != 255) return true;
    }
    return false;
}

/// Makes the weighted sums of source rows.
class RowMixer {
public:
    RowMixer(const TBitmap& picture, const Rect& part)
        : picture_(picture),
          top_(part.top),
          start_(static_cast<size_t>(part.left) * picture.bytesPerPixel()),
          transparent_(hasTransparency(picture, part)),
          count_(static_cast<size_t>(part.width()) * picture.bytesPerPixel()),
          row_(count_),
          sums_(count_) {}

    /// The sums for one new row, channels as in the picture; colours times alpha / 255 when it is transparent.
    const std::vector<float>& mix(const Share& share) {
        std::fill(row_.begin(), row_.end(), 0.0F);
        const auto last = share.first + static_cast<int32_t>(share.weights.size());
        int32_t y = share.first;
        // All rows between the first and the last have the same weight; an even number of them goes the quick way.
        if (!transparent_ && share.weights.size() >= 6) {
            add(y, share.weights[0]);
            ++y;
            const auto quick = static_cast<int32_t>((share.weights.size() - 2) / 2 * 2);
            addFull(y, y + quick, share.weights[1]);
            y += quick;
        }
        for (; y < last; ++y) add(y, share.weights[static_cast<size_t>(y - share.first)]);
        return row_;
    }
    [[nodiscard]] bool transparent() const { return transparent_; }

private:
    static constexpr int32_t most = 256;  ///< rows of bytes that a 16-bit sum can hold, an even number

    [[nodiscard]] const uint8_t* source(int32_t y) const { return picture_.row(top_ + y) + start_; }
    void add(int32_t y, float weight) {
        const uint8_t* from = source(y);
        float* to = row_.data();
        if (transparent_) {
            for (size_t i = 0; i < count_; i += 4) {
                const float alpha = weight * from[i + 3];
                for (size_t c = 0; c < 3; ++c) to[i + c] += alpha * from[i + c];
                to[i + 3] += alpha;
            }
        } else {
            for (size_t i = 0; i < count_; ++i) to[i] += weight * from[i];
        }
    }
    void addFull(int32_t from, int32_t to, float weight) {
        for (int32_t start = from; start < to; start += most) {
            std::fill(sums_.begin(), sums_.end(), uint16_t{0});
            for (int32_t y = start; y < std::min(to, start + most); y += 2)
                addTwoRows(sums_.data(), source(y), source(y + 1), count_);
            for (size_t i = 0; i < count_; ++i) row_[i] += weight * sums_[i];
        }
    }

    const TBitmap& picture_;
    int32_t top_;
    size_t start_;  ///< bytes to the left of the part
    bool transparent_;
    size_t count_;
    std::vector<float> row_;
    std::vector<uint16_t> sums_;
};

uint8_t toByte(float value) { return static_cast<uint8_t>(std::clamp(value + 0.5F, 0.0F, 255.0F)); }

template <size_t channels, bool transparent>
void mixAlong(const std::vector<float>& row, const std::vector<Share>& columns, uint8_t* to) {
    for (const Share& share : columns) {
        float sum[channels] = {};
        const float* from = row.data() + static_cast<size_t>(share.first) * channels;
        for (const float weight : share.weights) {
            for (size_t c = 0; c < channels; ++c) sum[c] += weight * from[c];
            from += channels;
        }
        if constexpr (transparent) {
            const float alpha = sum[3];
            for (size_t c = 0; c < 3; ++c) to[c] = alpha > 0 ? toByte(sum[c] / alpha) : uint8_t{0};
            to[3] = toByte(alpha);
        } else {
            for (size_t c = 0; c < channels; ++c) to[c] = toByte(sum[c]);
        }
        to += channels;
    }
}

}  // namespace

Result<TBitmap> resized(const TBitmap& picture, int32_t width, int32_t height) {
    return resized(picture, picture.bounds(), width, height);
}

Result<TBitmap> resized(const TBitmap& picture, const Rect& area, int32_t width, int32_t height) {
    const Rect part = area.intersected(picture.bounds());
    if (part.empty()) return Failure{"There is no picture to resize."};
    if (Size{part.width(), part.height()} == Size{width, height}) return picture.cropped(part);
    Result<TBitmap> result = TBitmap::create(width, height, picture.format());
    if (!result) return result;
    const std::vector<Share> columns = shares(part.width(), width);
    RowMixer mixer(picture, part);
    for (int32_t y = 0; y < height; ++y) {
        const bool grows = height >= part.height();
        const std::vector<float>& row =
            mixer.mix(grows ? linearShare(part.height(), height, y) : areaShare(part.height(), height, y));
        if (picture.format() == PixelFormat::Bgr24)
            mixAlong<3, false>(row, columns, result->row(y));
        else if (mixer.transparent())
            mixAlong<4, true>(row, columns, result->row(y));
        else
            mixAlong<4, false>(row, columns, result->row(y));
    }
    return result;
}

Size fittedSize(Size picture, Size within) {
    const double scale = std::min({1.0, static_cast<double>(within.width) / std::max(picture.width, 1),
                                   static_cast<double>(within.height) / std::max(picture.height, 1)});
    return {std::max(1, static_cast<int32_t>(std::lround(picture.width * scale))),
            std::max(1, static_cast<int32_t>(std::lround(picture.height * scale)))};
}

Result<TBitmap> thumbnail(const TBitmap& picture, Size within) {
    const Size size = fittedSize(picture.size(), within);
    return resized(picture, size.width, size.height);
}

}  // namespace glimmer
