#include "common/region.h"

#include <algorithm>
#include <cmath>

namespace glimmer {

/// Takes spans row band by row band, in order, and keeps the canonical form.
class Region::Builder {
public:
    void beginBand(int32_t top, int32_t bottom) {
        top_ = top;
        bottom_ = bottom;
        bandStart_ = rects_.size();
    }
    /// Spans come from left to right; touching ones become one.
    void add(int32_t left, int32_t right) {
        if (right <= left) return;
        if (rects_.size() > bandStart_ && rects_.back().right >= left)
            rects_.back().right = std::max(rects_.back().right, right);
        else
            rects_.push_back({left, top_, right, bottom_});
    }
    /// Joins the band to the one above when both hold the same spans and touch.
    void endBand() {
        const size_t count = rects_.size() - bandStart_;
        const bool joins =
            count > 0 && bandStart_ - previousStart_ == count && rects_[previousStart_].bottom == top_ &&
            std::equal(rects_.begin() + offset(bandStart_), rects_.end(), rects_.begin() + offset(previousStart_),
                       [](const Rect& a, const Rect& b) { return a.left == b.left && a.right == b.right; });
        if (joins) {
            for (size_t i = previousStart_; i < bandStart_; ++i) rects_[i].bottom = bottom_;
            rects_.resize(bandStart_);
        } else if (count > 0) {
            previousStart_ = bandStart_;
        }
    }
    Region take() {
        Region region;
        region.rects_ = std::move(rects_);
        return region;
    }

private:
    static std::ptrdiff_t offset(size_t i) { return static_cast<std::ptrdiff_t>(i); }

    std::vector<Rect> rects_;
    size_t previousStart_ = 0;
    size_t bandStart_ = 0;
    int32_t top_ = 0;
    int32_t bottom_ = 0;
};

namespace {

/// Walks the bands of a region downwards.
class BandCursor {
public:
    explicit BandCursor(const std::vector<Rect>& rects) : rects_(rects) { settle(); }
    /// The spans that cover row y and the next row at which that changes. y never decreases between calls.
    std::span<const Rect> at(int32_t y, int32_t& change) {
        while (start_ < rects_.size() && rects_[start_].bottom <= y) {
            start_ = end_;
            settle();
        }
        if (start_ == rects_.size()) return {};
        const Rect& first = rects_[start_];
        change = std::min(change, y < first.top ? first.top : first.bottom);
        return y < first.top ? std::span<const Rect>() : std::span<const Rect>(&rects_[start_], end_ - start_);
    }

private:
    void settle() {
        end_ = start_;
        while (end_ < rects_.size() && rects_[end_].top == rects_[start_].top) ++end_;
    }
    const std::vector<Rect>& rects_;
    size_t start_ = 0;
    size_t end_ = 0;
};

/// The next place, going right, at which a row of spans begins or ends.
class EdgeCursor {
public:
    explicit EdgeCursor(std::span<const Rect> spans) : spans_(spans) {}
    [[nodiscard]] bool done() const { return at_ == spans_.size(); }
    [[nodiscard]] int64_t place() const {
        if (done()) return INT64_MAX;
        return inside_ ? spans_[at_].right : spans_[at_].left;
    }
    [[nodiscard]] bool inside() const { return inside_; }
    void passUpTo(int64_t x) {
        while (place() == x) {
            if (inside_) ++at_;
            inside_ = !inside_;
        }
    }

private:
    std::span<const Rect> spans_;
    size_t at_ = 0;
    bool inside_ = false;
};

/// Where the outline of a polygon crosses the middle of a row, going down (+1) or up (-1).
struct Crossing {
    int32_t y;
    double x;
    int direction;
};

/// The first pixel whose centre is not left of x.
int32_t firstCentre(double x) { return static_cast<int32_t>(std::ceil(x - 0.5)); }

}  // namespace

Region Region::rectangle(const Rect& area) {
    Region region;
    if (!area.empty()) region.rects_.push_back(area);
    return region;
}

Region Region::ellipse(const Rect& area) {
    Builder builder;
    if (area.empty()) return {};
    const double width = area.width();
    const double height = area.height();
    const double centre = (static_cast<double>(area.left) + area.right) / 2;
    for (int32_t y = area.top; y < area.bottom; ++y) {
        const double down = 2.0 * (y - area.top) + 1 - height;
        const double half = width * std::sqrt(std::max(0.0, height * height - down * down)) / (2 * height);
        builder.beginBand(y, y + 1);
        builder.add(std::max(area.left, firstCentre(centre - half)),
                    std::min(area.right, static_cast<int32_t>(std::floor(centre + half + 0.5))));
        builder.endBand();
    }
    return builder.take();
}

Region Region::polygon(std::span<const Point> corners) {
    if (corners.size() < 3) return {};
    std::vector<Crossing> crossings;
    for (size_t i = 0; i < corners.size(); ++i) {
        Point from = corners[i];
        Point to = corners[(i + 1) % corners.size()];
        const int direction = from.y < to.y ? 1 : -1;
        if (direction < 0) std::swap(from, to);
        const double slope =
            from.y == to.y ? 0 : (static_cast<double>(to.x) - from.x) / (static_cast<double>(to.y) - from.y);
        for (int32_t y = from.y; y < to.y; ++y)
            crossings.push_back({y, from.x + slope * (static_cast<double>(y) - from.y + 0.5), direction});
    }
    std::sort(crossings.begin(), crossings.end(),
              [](const Crossing& a, const Crossing& b) { return a.y != b.y ? a.y < b.y : a.x < b.x; });
    Builder builder;
    for (size_t i = 0; i < crossings.size();) {
        const int32_t y = crossings[i].y;
        builder.beginBand(y, y + 1);
        int turns = 0;
        for (; i < crossings.size() && crossings[i].y == y; ++i) {
            const int before = turns;
            turns += crossings[i].direction;
            if (before != 0) builder.add(firstCentre(crossings[i - 1].x), firstCentre(crossings[i].x));
        }
        builder.endBand();
    }
    return builder.take();
}

Rect Region::bounds() const {
    Rect all;
    for (const Rect& rect : rects_) all = all.united(rect);
    return all;
}

bool Region::contains(Point p) const {
    const auto below =
        std::partition_point(rects_.begin(), rects_.end(), [p](const Rect& r) { return r.bottom <= p.y; });
    for (auto it = below; it != rects_.end() && it->top <= p.y; ++it)
        if (it->contains(p)) return true;
    return false;
}

uint64_t Region::pixelCount() const {
    uint64_t count = 0;
    for (const Rect& rect : rects_) count += static_cast<uint64_t>(rect.width()) * static_cast<uint64_t>(rect.height());
    return count;
}

Region Region::combined(const Region& other, uint32_t rule) const {
    Builder builder;
    BandCursor mine(rects_);
    BandCursor theirs(other.rects_);
    int32_t y = INT32_MIN;
    while (y != INT32_MAX) {
        int32_t next = INT32_MAX;
        const std::span<const Rect> a = mine.at(y, next);
        const std::span<const Rect> b = theirs.at(y, next);
        builder.beginBand(y, next);
        EdgeCursor first(a);
        EdgeCursor second(b);
        while (!first.done() || !second.done()) {
            const int64_t x = std::min(first.place(), second.place());
            first.passUpTo(x);
            second.passUpTo(x);
            const uint32_t state = (first.inside() ? 1U : 0U) + (second.inside() ? 2U : 0U);
            if ((rule >> state & 1U) != 0)
                builder.add(static_cast<int32_t>(x), static_cast<int32_t>(std::min(first.place(), second.place())));
        }
        builder.endBand();
        y = next;
    }
    return builder.take();
}

Region Region::united(const Region& other) const { return combined(other, 0b1110); }
Region Region::intersected(const Region& other) const { return combined(other, 0b1000); }
Region Region::subtracted(const Region& other) const { return combined(other, 0b0010); }
Region Region::exclusiveOr(const Region& other) const { return combined(other, 0b0110); }
Region Region::invertedWithin(const Rect& area) const { return rectangle(area).subtracted(*this); }

Region Region::moved(int32_t dx, int32_t dy) const {
    Region region = *this;
    for (Rect& rect : region.rects_) rect = rect.moved(dx, dy);
    return region;
}

}  // namespace glimmer
