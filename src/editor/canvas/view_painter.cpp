#include "editor/canvas/view_painter.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "editor/painting/annotation_painter.h"

namespace glimmer {

namespace {

void setPixel(TBitmap& target, const Rect& clip, int32_t x, int32_t y, Colour colour) {
    if (!clip.contains({x, y})) return;
    uint8_t* p = target.row(y) + static_cast<size_t>(x) * 4;
    p[0] = blueOf(colour);
    p[1] = greenOf(colour);
    p[2] = redOf(colour);
    p[3] = 255;
}

/// From 200 % on: each picture pixel becomes a square. Equal rows are copied.
void enlarge(TBitmap& target, const Rect& clip, Point origin, int32_t factor, const TBitmap& picture) {
    const size_t length = static_cast<size_t>(clip.width()) * 4;
    int32_t last = -1;
    for (int32_t y = clip.top; y < clip.bottom; ++y) {
        uint8_t* out = target.row(y) + static_cast<size_t>(clip.left) * 4;
        const int32_t from = (y - origin.y) / factor;
        if (from == last) {
            std::memcpy(out, out - target.stride(), length);
            continue;
        }
        last = from;
        const uint8_t* row = picture.row(from);
        int32_t source = (clip.left - origin.x) / factor;
        int32_t left = factor - (clip.left - origin.x) % factor;
        for (int32_t x = clip.left; x < clip.right; ++x, out += 4) {
            std::memcpy(out, row + static_cast<size_t>(source) * 4, 4);
            if (--left == 0) {
                left = factor;
                ++source;
            }
        }
    }
}

/// What of a line of picture pixels goes into one device pixel.
struct Share {
    int32_t source;
    uint32_t weight;
};

/// The shares of the device pixels from `first` to `end`, counted from the picture's origin, one after the other. With
/// lengths in 1/zoom of a picture pixel, a device pixel is 100 long and a picture pixel `zoom`, so all weights are
/// whole; those of a device pixel sum to 100. The last one may reach beyond the picture's `length`.
std::vector<Share> sharesOf(int32_t first, int32_t end, int32_t zoom, int32_t length) {
    std::vector<Share> shares;
    const int64_t stop = static_cast<int64_t>(end) * 100;
    for (int64_t at = static_cast<int64_t>(first) * 100; at < stop;) {
        const int64_t source = at / zoom;
        const int64_t next = std::min({(source + 1) * zoom, (at / 100 + 1) * 100, stop});
        shares.push_back(
            {static_cast<int32_t>(std::min<int64_t>(source, length - 1)), static_cast<uint32_t>(next - at)});
        at = next;
    }
    return shares;
}

/// Two shares of a device pixel, which are weighted together in one step; an odd last one goes with a weight of 0.
struct Pair {
    const uint16_t* first;
    const uint16_t* second;
    int32_t weights;  ///< the first one's in the lower half
    bool last;        ///< of its device pixel
};

/// The pairs of `shares`, whose sources lie in `line`, a line of pixels that begins with the source `start`.
std::vector<Pair> pairsOf(const std::vector<Share>& shares, const uint16_t* line, int32_t start) {
    std::vector<Pair> pairs;
    const auto pixel = [&](const Share& share) { return line + static_cast<size_t>(share.source - start) * 4; };
    for (auto share = shares.begin(); share != shares.end();) {
        uint32_t done = 0;
        while (done < 100) {
            Pair pair{pixel(*share), pixel(*share), static_cast<int32_t>(share->weight), false};
            done += share++->weight;
            if (done < 100) {
                pair.second = pixel(*share);
                pair.weights |= static_cast<int32_t>(share->weight << 16U);
                done += share++->weight;
            }
            pair.last = done == 100;
            pairs.push_back(pair);
        }
    }
    return pairs;
}

/// Each of the four numbers, below 2^22, divided by 10000 as whole numbers are: (n / 16) * 214749 / 2^27.
__m128i dividedByTenThousand(__m128i numbers) {
    const __m128i factor = _mm_set1_epi32(214749);
    const __m128i n = _mm_srli_epi32(numbers, 4);
    const __m128i even = _mm_srli_epi64(_mm_mul_epu32(n, factor), 27);
    const __m128i odd = _mm_srli_epi64(_mm_mul_epu32(_mm_srli_epi64(n, 32), factor), 27);
    return _mm_or_si128(even, _mm_slli_epi64(odd, 32));
}

/// Below 200 %: each device pixel is the average of the picture it covers.
void average(TBitmap& target, const Rect& clip, Point origin, int32_t zoom, const TBitmap& picture) {
    constexpr uint32_t whole = 100;
    const std::vector<Share> across = sharesOf(clip.left - origin.x, clip.right - origin.x, zoom, picture.width());
    const std::vector<Share> down = sharesOf(clip.top - origin.y, clip.bottom - origin.y, zoom, picture.height());
    const int32_t firstSource = across.front().source;
    const auto count = static_cast<size_t>(across.back().source - firstSource + 1) * 4;
    std::vector<uint16_t> sums(count);
    const std::vector<Pair> pairs = pairsOf(across, sums.data(), firstSource);
    const __m128i half = _mm_set1_epi32(whole * whole / 2);
    const auto four = [](const uint16_t* p) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)); };
    auto line = down.begin();
    for (int32_t y = clip.top; y < clip.bottom; ++y) {
        // The lines first: their sums are at most 255 times 100.
        for (uint32_t done = 0; done < whole; done += line->weight, ++line) {
            const uint8_t* row = picture.row(line->source) + static_cast<size_t>(firstSource) * 4;
            const auto weight = static_cast<uint16_t>(line->weight);
            if (done == 0)
                for (size_t i = 0; i < count; ++i) sums[i] = static_cast<uint16_t>(row[i] * weight);
            else
                for (size_t i = 0; i < count; ++i) sums[i] = static_cast<uint16_t>(sums[i] + row[i] * weight);
        }
        uint8_t* out = target.row(y) + static_cast<size_t>(clip.left) * 4;
        __m128i sum = half;
        for (const Pair& pair : pairs) {
            const __m128i both = _mm_unpacklo_epi16(four(pair.first), four(pair.second));
            sum = _mm_add_epi32(sum, _mm_madd_epi16(both, _mm_set1_epi32(pair.weights)));
            if (!pair.last) continue;
            const __m128i words = _mm_packs_epi32(dividedByTenThousand(sum), _mm_setzero_si128());
            const auto pixel = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(words, words))) | 0xFF000000U;
            std::memcpy(out, &pixel, 4);
            out += 4;
            sum = half;
        }
    }
}

void paintPicture(TBitmap& target, const Rect& clip, const CanvasView& view, const TBitmap& picture) {
    const Point origin = view.origin();
    if (view.zoom() == 100)
        copyPixels(target, {clip.left, clip.top}, picture, clip.moved(-origin.x, -origin.y));
    else if (view.zoom() >= 200)
        enlarge(target, clip, origin, view.zoom() / 100, picture);
    else
        average(target, clip, origin, view.zoom(), picture);
}

/// One dashed line of the selection's outline, dashes of `dash` pixels in black and white that run on round corners.
void dashes(TBitmap& target, const Rect& clip, Rect line, int32_t dash) {
    const Rect part = line.intersected(clip);
    for (int32_t y = part.top; y < part.bottom; ++y)
        for (int32_t x = part.left; x < part.right; ++x)
            setPixel(target, clip, x, y, (std::abs(x + y) / dash) % 2 == 0 ? rgb(0, 0, 0) : rgb(255, 255, 255));
}

/// The border between selected and other pixels, drawn just inside the selection.
void outline(TBitmap& target, const Rect& clip, const CanvasView& view, const Region& region, int32_t dash) {
    const auto edge = [&](const Rect& picturePixels, int side) {
        Rect line = view.toView(picturePixels);
        if (side == 0) line.bottom = line.top + 1;
        if (side == 1) line.top = line.bottom - 1;
        if (side == 2) line.right = line.left + 1;
        if (side == 3) line.left = line.right - 1;
        dashes(target, clip, line, dash);
    };
    if (region.isRectangle()) {
        for (int side = 0; side < 4; ++side) edge(region.rects()[0], side);
        return;
    }
    // Where a rectangle's upper (lower) side has no selected pixel above (below) it, and its left and right sides,
    // which never touch another rectangle of the band.
    const Region down = region.subtracted(region.moved(0, 1));
    const Region up = region.subtracted(region.moved(0, -1));
    for (const Rect& r : down.rects()) edge({r.left, r.top, r.right, r.top + 1}, 0);
    for (const Rect& r : up.rects()) edge({r.left, r.bottom - 1, r.right, r.bottom}, 1);
    for (const Rect& r : region.rects()) {
        edge({r.left, r.top, r.left + 1, r.bottom}, 2);
        edge({r.right - 1, r.top, r.right, r.bottom}, 3);
    }
}

void segment(TBitmap& target, const Rect& clip, Point a, Point b) {
    const int32_t steps = std::max({std::abs(b.x - a.x), std::abs(b.y - a.y), 1});
    for (int32_t i = 0; i <= steps; ++i) {
        const auto x = static_cast<int32_t>(a.x + static_cast<int64_t>(b.x - a.x) * i / steps);
        const auto y = static_cast<int32_t>(a.y + static_cast<int64_t>(b.y - a.y) * i / steps);
        setPixel(target, clip, x, y, (i / 4) % 2 == 0 ? rgb(0, 0, 0) : rgb(255, 255, 255));
    }
}

void dim(TBitmap& target, const Rect& area) {
    for (int32_t y = area.top; y < area.bottom; ++y) {
        uint8_t* p = target.row(y) + static_cast<size_t>(area.left) * 4;
        for (int32_t x = area.left; x < area.right; ++x, p += 4)
            for (int c = 0; c < 3; ++c) p[c] = static_cast<uint8_t>(p[c] * 9 / 16);
    }
}

std::vector<Point> inView(const std::vector<Point>& points, const CanvasView& view) {
    std::vector<Point> result;
    result.reserve(points.size());
    for (const Point& p : points) result.push_back(view.toView(p));
    return result;
}

}  // namespace

void paintView(TBitmap& target, const Rect& wholeClip, const CanvasView& view, const TBitmap& picture,
               const CanvasOverlay& overlay, const CanvasLook& look) {
    const Rect clip = wholeClip.intersected(target.bounds());
    if (clip.empty()) return;
    const Point origin = view.origin();
    const Size extent = view.extent();
    const Rect sheet{origin.x, origin.y, origin.x + extent.width, origin.y + extent.height};
    const Rect inside = sheet.intersected(clip);
    const Region around = Region::rectangle(clip).subtracted(Region::rectangle(inside.empty() ? Rect{} : inside));
    for (const Rect& piece : around.rects()) target.fill(piece, look.desk);
    const Region border = Region::rectangle(sheet.inflated(1)).subtracted(Region::rectangle(sheet));
    for (const Rect& piece : border.rects()) target.fill(piece.intersected(clip), look.border);
    if (!inside.empty()) paintPicture(target, inside, view, picture);

    if (overlay.dimOutside) {
        Region dimmed = Region::rectangle(inside.empty() ? Rect{} : inside);
        Region lit;
        for (const Rect& r : overlay.selection.rects()) lit = lit.united(Region::rectangle(view.toView(r)));
        const Region dark = dimmed.subtracted(lit);
        for (const Rect& piece : dark.rects()) dim(target, piece);
    }
    const int32_t dash = std::max(4, 4 * look.dotsPerInch / 96);
    if (!overlay.selection.empty()) outline(target, clip, view, overlay.selection, dash);
    const std::vector<Point> line = inView(overlay.polyline, view);
    for (size_t i = 1; i < line.size(); ++i) segment(target, clip, line[i - 1], line[i]);
    if (!overlay.guides.empty()) {
        std::vector<GuideLine> guides = overlay.guides;
        for (GuideLine& guide : guides)
            guide.at = guide.vertical ? view.toView(Point{guide.at, 0}).x : view.toView(Point{0, guide.at}).y;
        paintGuides(target, clip, guides);
    }
    if (!overlay.handles.empty())
        paintHandles(target, clip, inView(overlay.handles, view), handleSize(look.dotsPerInch));
}

Rect overlayArea(const CanvasOverlay& overlay, const CanvasView& view, int32_t dotsPerInch) {
    if (overlay.dimOutside || !overlay.guides.empty()) return {0, 0, view.window().width, view.window().height};
    Rect area = overlay.selection.bounds();
    if (!area.empty()) area = view.toView(area);
    const int32_t reach = handleSize(dotsPerInch) / 2 + 2;
    const auto include = [&](const std::vector<Point>& points) {
        for (const Point& p : inView(points, view))
            area = area.united(Rect{p.x, p.y, p.x + 1, p.y + 1}.inflated(reach));
    };
    include(overlay.polyline);
    include(overlay.handles);
    return area;
}

}  // namespace glimmer
