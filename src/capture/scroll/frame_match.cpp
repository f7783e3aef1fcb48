#include "capture/scroll/frame_match.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numeric>

#include "common/assertion.h"

// First every distance is rated by the rows' signatures, which is a thousand times less than all pixels. The few best
// are then compared pixel by pixel, and for each the borders of what stays are set where they explain most. The
// cheapest of those that explain enough wins; how far the next one is behind says how sure that is.

namespace glimmer {

namespace {

/// A match needs that many rows in common at least.
constexpr int32_t leastOverlap = 8;
/// Differences of signatures that noise makes; a line of text makes more.
constexpr int signatureTolerance = 12;
constexpr int signatureCap = 96;
/// Differences of one pixel count up to this: black on white is no worse than black on grey.
constexpr uint8_t pixelCap = 32;
constexpr size_t mostCandidates = 10;
/// So many different pixels between two distances decide for sure.
constexpr double decisivePixels = 12;

int difference(const ScrollFrame::Signature& a, const ScrollFrame::Signature& b) {
    const __m128i sums = _mm_sad_epu8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(a.data())),
                                      _mm_loadu_si128(reinterpret_cast<const __m128i*>(b.data())));
    return _mm_cvtsi128_si32(sums) + _mm_extract_epi16(sums, 4);
}

/// Capped differences of `count` pixels, in units of whole pixels.
float pixelDifference(const uint8_t* a, const uint8_t* b, int32_t count) {
    const __m128i cap = _mm_set1_epi8(static_cast<char>(pixelCap));
    __m128i sums = _mm_setzero_si128();
    int32_t x = 0;
    for (; x + 16 <= count; x += 16) {
        const __m128i left = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a + x));
        const __m128i right = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + x));
        const __m128i apart = _mm_or_si128(_mm_subs_epu8(left, right), _mm_subs_epu8(right, left));
        sums = _mm_add_epi32(sums, _mm_sad_epu8(_mm_min_epu8(apart, cap), _mm_setzero_si128()));
    }
    int32_t sum = _mm_cvtsi128_si32(sums) + _mm_cvtsi128_si32(_mm_srli_si128(sums, 8));
    for (; x < count; ++x) sum += std::min<int32_t>(std::abs(a[x] - b[x]), pixelCap);
    return static_cast<float>(sum) / pixelCap;
}

/// Row `yAfter` of the second frame against row `yBefore` of the first one, moved to the right; in pixels, those that
/// are beyond a border left out.
float rowDifference(const ScrollFrame& before, int32_t yBefore, const ScrollFrame& after, int32_t yAfter,
                    int32_t shift) {
    const int32_t from = std::max(shift, 0);
    const int32_t count = before.size().width - std::abs(shift);
    return pixelDifference(before.row(yBefore) + from - shift, after.row(yAfter) + from, count);
}

struct Candidate {
    int32_t moved = 0;
    int32_t shift = 0;
    double rating = 0;  ///< by signatures
    int32_t header = 0;
    int32_t footer = 0;
    double cost = 0;       ///< pixels that differ
    double evidence = 0;   ///< weights of the rows that moved and were found again
    double explained = 0;  ///< part of the moved rows that were
};

/// Part of a row that may differ in one that counts as found again.
constexpr double rowNoise = 0.125;

/// The rating of a distance: what is found again speaks for it, what is not against it.
double rate(const ScrollFrame& before, const ScrollFrame& after, int32_t moved, int32_t header, int32_t footer) {
    constexpr double missing = 0.5;
    double rating = 0;
    for (int32_t y = header; y + moved < before.size().height - footer; ++y) {
        const int apart = std::min(difference(after.signature(y), before.signature(y + moved)), signatureCap);
        rating += apart <= signatureTolerance ? static_cast<double>(after.weight(y)) : -missing * apart / signatureCap;
    }
    return rating;
}

/// The best of all distances, each one's neighbours left out that are worse.
std::vector<Candidate> rateAll(const ScrollFrame& before, const ScrollFrame& after, const std::vector<float>& stays,
                               int32_t expected) {
    const int32_t height = before.size().height;
    int32_t header = 0;
    int32_t footer = 0;
    while (header < height / 2 && stays[static_cast<size_t>(header)] < 1) ++header;
    while (footer < height / 2 && stays[static_cast<size_t>(height - 1 - footer)] < 1) ++footer;
    std::vector<Candidate> all;
    for (int32_t moved = 1; moved <= height - header - footer - leastOverlap; ++moved)
        all.push_back({moved, 0, rate(before, after, moved, header, footer)});
    const size_t kept = std::min(all.size(), mostCandidates);
    std::partial_sort(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(kept), all.end(),
                      [](const Candidate& a, const Candidate& b) { return a.rating > b.rating; });
    all.resize(kept);
    const bool listed =
        std::any_of(all.begin(), all.end(), [expected](const Candidate& one) { return one.moved == expected; });
    if (expected > 0 && expected <= height - leastOverlap && !listed) all.push_back({expected});
    return all;
}

/// Sets the borders of what stays where the pixels speak for it, and counts. With ties as much as possible moves.
void weigh(Candidate& candidate, const ScrollFrame& before, const ScrollFrame& after,
           const std::vector<double>& staysBefore) {
    const int32_t height = before.size().height;
    const int32_t moved = candidate.moved;
    std::vector<float> apart(static_cast<size_t>(height - moved));
    std::vector<double> apartBefore(apart.size() + 1, 0);
    for (int32_t y = 0; y < height - moved; ++y) {
        const auto at = static_cast<size_t>(y);
        apart[at] = rowDifference(before, y + moved, after, y, candidate.shift);
        apartBefore[at + 1] = apartBefore[at] + static_cast<double>(apart[at]);
    }
    // Both borders at once; the best header above each place is kept.
    const int32_t most = std::min(height / 2, height - moved);
    std::vector<int32_t> headers{0};
    const auto headerCost = [&](int32_t header) {
        const auto at = static_cast<size_t>(header);
        return staysBefore[at] - apartBefore[at];
    };
    for (int32_t header = 1; header <= most; ++header)
        headers.push_back(headerCost(header) < headerCost(headers.back()) ? header : headers.back());
    double best = std::numeric_limits<double>::max();
    for (int32_t footer = 0; footer <= height / 2 && height - footer - moved >= 0; ++footer) {
        const int32_t end = height - footer - moved;
        const int32_t header = headers[static_cast<size_t>(std::min(end, most))];
        const double cost = headerCost(header) + apartBefore[static_cast<size_t>(end)] + staysBefore.back() -
                            staysBefore[static_cast<size_t>(height - footer)];
        if (cost >= best) continue;
        best = cost;
        candidate.header = header;
        candidate.footer = footer;
    }
    candidate.cost = best;
    const int32_t end = height - candidate.footer - moved;
    const double noise = rowNoise * before.size().width;
    int32_t found = 0;
    for (int32_t y = candidate.header; y < end; ++y) {
        if (static_cast<double>(apart[static_cast<size_t>(y)]) > noise) continue;
        ++found;
        candidate.evidence += static_cast<double>(after.weight(y));
    }
    candidate.explained = end > candidate.header ? static_cast<double>(found) / (end - candidate.header) : 0;
}

/// How far the rows of a distance are moved to the right, by some of them that say most.
int32_t bestShift(const ScrollFrame& before, const ScrollFrame& after, int32_t moved) {
    constexpr size_t looks = 24;
    const int32_t most = before.size().width / 8;
    const int32_t height = before.size().height;
    std::vector<int32_t> rows;
    const int32_t middle = height - moved;
    for (int32_t y = middle / 8; y < middle - middle / 8; ++y)
        if (after.weight(y) > 0.5F) rows.push_back(y);
    const size_t step = std::max<size_t>(1, rows.size() / looks);
    int32_t best = 0;
    double least = std::numeric_limits<double>::max();
    for (int32_t distance = 0; distance <= most; ++distance) {
        for (const int32_t shift : {distance, -distance}) {
            double cost = 0;
            for (size_t i = 0; i < rows.size(); i += step)
                cost += static_cast<double>(rowDifference(before, rows[i] + moved, after, rows[i], shift));
            cost /= before.size().width - distance;
            if (cost < least) best = shift;
            least = std::min(least, cost);
        }
    }
    return best;
}

/// Brightness of a row without its place: the mean of all, and how much neighbours differ.
std::array<float, 2> shiftless(const ScrollFrame& frame, int32_t y) {
    const uint8_t* row = frame.row(y);
    int64_t sum = row[0];
    int64_t edges = 0;
    for (int32_t x = 1; x < frame.size().width; ++x) {
        sum += row[x];
        edges += std::abs(row[x] - row[x - 1]);
    }
    const auto width = static_cast<float>(frame.size().width);
    return {static_cast<float>(sum) / width, static_cast<float>(edges) / width};
}

/// Distances of content that went sideways too: rows are rated by what does not depend on their place.
std::vector<Candidate> rateShifted(const ScrollFrame& before, const ScrollFrame& after) {
    constexpr float tolerance = 2;
    constexpr size_t kept = 4;
    const int32_t height = before.size().height;
    std::vector<std::array<float, 2>> first;
    std::vector<std::array<float, 2>> second;
    for (int32_t y = 0; y < height; ++y) {
        first.push_back(shiftless(before, y));
        second.push_back(shiftless(after, y));
    }
    std::vector<Candidate> all;
    for (int32_t moved = 1; moved <= height - leastOverlap; ++moved) {
        double rating = 0;
        for (int32_t y = 0; y + moved < height; ++y) {
            const auto& a = second[static_cast<size_t>(y)];
            const auto& b = first[static_cast<size_t>(y) + static_cast<size_t>(moved)];
            const bool same = std::abs(a[0] - b[0]) < tolerance && std::abs(a[1] - b[1]) < tolerance;
            rating += same ? static_cast<double>(after.weight(y)) : -0.25;
        }
        all.push_back({moved, 0, rating});
    }
    const size_t count = std::min(all.size(), kept);
    std::partial_sort(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count), all.end(),
                      [](const Candidate& a, const Candidate& b) { return a.rating > b.rating; });
    all.resize(count);
    for (Candidate& one : all) one.shift = bestShift(before, after, one.moved);
    return all;
}

bool explains(const Candidate& candidate, double mostEvidence) {
    constexpr double leastEvidence = 3;
    constexpr double leastExplained = 0.6;
    return candidate.evidence >= std::max(leastEvidence, 0.1 * mostEvidence) && candidate.explained >= leastExplained;
}

/// Pixels that differ for each row that speaks for a distance. A few are always allowed for, so that a short overlap
/// without any is no better than a long one with noise.
double badness(const Candidate& one) {
    constexpr double always = 2;
    return (one.cost + always) / one.evidence;
}

FrameMatch choose(std::vector<Candidate> candidates, int32_t expected) {
    double most = 0;
    for (const Candidate& one : candidates)
        if (one.explained > 0.5) most = std::max(most, one.evidence);
    candidates.erase(std::remove_if(candidates.begin(), candidates.end(),
                                    [most](const Candidate& one) { return !explains(one, most); }),
                     candidates.end());
    if (candidates.empty()) return {};
    std::sort(candidates.begin(), candidates.end(),
              [](const Candidate& a, const Candidate& b) { return badness(a) < badness(b); });
    const Candidate* best = &candidates.front();
    // How many pixels speak against the next one.
    double margin = std::numeric_limits<double>::max();
    for (const Candidate& other : candidates) {
        if (other.moved == candidates.front().moved) continue;
        const double against = (badness(other) - badness(candidates.front())) * candidates.front().evidence;
        margin = std::min(margin, against);
        if (against < decisivePixels / 2 && expected > 0 &&
            std::abs(other.moved - expected) < std::abs(best->moved - expected))
            best = &other;
    }
    FrameMatch match{best->moved, best->shift, best->header, best->footer};
    constexpr double plenty = 12;  // rows
    const double distinct = std::clamp(margin / decisivePixels, 0.0, 1.0);
    const double foreseen = best->moved == expected ? 0.45 : 0.2;
    match.sureness = best->explained * std::min(1.0, best->evidence / plenty) * std::max(distinct, foreseen);
    return match;
}

}  // namespace

ScrollFrame::ScrollFrame(const TBitmap& picture) : size_(picture.size()) {
    GLIMMER_ASSERT(picture.format() == PixelFormat::Bgra32 && !picture.empty(), "format==Bgra32", "uFrameMatch");
    const auto width = static_cast<size_t>(size_.width);
    grey_.resize(width * static_cast<size_t>(size_.height));
    signatures_.resize(static_cast<size_t>(size_.height));
    weights_.resize(static_cast<size_t>(size_.height));
    uint8_t* out = grey_.data();
    for (int32_t y = 0; y < size_.height; ++y, out += width) {
        const uint8_t* in = picture.row(y);
        for (size_t x = 0; x < width; ++x)
            out[x] = static_cast<uint8_t>((in[4 * x] + 5 * in[4 * x + 1] + 2 * in[4 * x + 2]) / 8);
        Signature& signature = signatures_[static_cast<size_t>(y)];
        for (size_t block = 0; block < blocks; ++block) {
            const size_t from = width * block / blocks;
            const size_t to = std::max(width * (block + 1) / blocks, from + 1);
            const uint32_t sum = std::accumulate(out + from, out + std::min(to, width), uint32_t{0});
            signature[block] = static_cast<uint8_t>(sum / std::max<size_t>(to - from, 1));
        }
        constexpr float quiet = 0.02F;
        const bool changes = y > 0 && pixelDifference(out, out - width, size_.width) >= 2;
        weights_[static_cast<size_t>(y)] = changes ? 1.0F : quiet;
    }
}

FrameMatch matchFrames(const ScrollFrame& before, const ScrollFrame& after, int32_t expected) {
    GLIMMER_ASSERT(before.size() == after.size(), "before.size==after.size", "uFrameMatch");
    const int32_t height = before.size().height;
    std::vector<float> stays;
    std::vector<double> staysBefore{0};
    for (int32_t y = 0; y < height; ++y) {
        stays.push_back(rowDifference(before, y, after, y, 0));
        staysBefore.push_back(staysBefore.back() + static_cast<double>(stays.back()));
    }
    if (staysBefore.back() < 1) return {0, 0, height, 0, 1, true};
    std::vector<Candidate> candidates = rateAll(before, after, stays, expected);
    for (Candidate& one : candidates) weigh(one, before, after, staysBefore);
    const FrameMatch straight = choose(std::move(candidates), expected);
    if (straight.moved > 0) return straight;
    candidates = rateShifted(before, after);
    for (Candidate& one : candidates) weigh(one, before, after, staysBefore);
    return choose(std::move(candidates), expected);
}

}  // namespace glimmer
