// Wu's quantiser: sums over the colour cube let the variance of any box be had from its eight corners.

#include <algorithm>
#include <array>
#include <cmath>

#include "imaging/quantiser.h"

namespace glimmer {

namespace {

constexpr unsigned bits = 5;
constexpr size_t side = (size_t{1} << bits) + 1;  // cell 0 of each axis is empty
using Axis = size_t;
constexpr Axis blueAxis = 0;
constexpr Axis axes = 3;

/// Sums over some of the colours.
struct Moments {
    double count = 0;
    std::array<double, axes> colour{};
    double squares = 0;

    Moments& operator+=(const Moments& other) { return add(other, 1); }
    Moments& operator-=(const Moments& other) { return add(other, -1); }
    Moments& add(const Moments& other, double sign) {
        count += sign * other.count;
        for (Axis axis = 0; axis < axes; ++axis) colour[axis] += sign * other.colour[axis];
        squares += sign * other.squares;
        return *this;
    }
    /// Squared length of the sum, divided by the count: what a box's mean explains.
    [[nodiscard]] double explained() const {
        double sum = 0;
        for (const double part : colour) sum += part * part;
        return count > 0 ? sum / count : 0;
    }
    [[nodiscard]] double variance() const { return squares - explained(); }
};

/// Cells with low < cell <= high on each axis.
struct Box {
    std::array<size_t, axes> low{};
    std::array<size_t, axes> high{};
};

class Cube {
public:
    explicit Cube(std::span<const ColourCount> colours) : cells_(side * side * side) {
        for (const ColourCount& one : colours) {
            const std::array<unsigned, axes> values{blueIn(one.colour), greenIn(one.colour), redIn(one.colour)};
            Moments& cell = cells_[place((values[0] >> (8 - bits)) + 1, (values[1] >> (8 - bits)) + 1,
                                         (values[2] >> (8 - bits)) + 1)];
            cell.count += one.count;
            for (Axis axis = 0; axis < axes; ++axis) {
                cell.colour[axis] += static_cast<double>(one.count) * values[axis];
                cell.squares += static_cast<double>(one.count) * values[axis] * values[axis];
            }
        }
        // Each cell becomes the sum over everything below it, one axis after the other.
        for (size_t a = 1; a < side; ++a)
            for (size_t b = 1; b < side; ++b)
                for (size_t c = 1; c < side; ++c) cells_[place(a, b, c)] += cells_[place(a - 1, b, c)];
        for (size_t a = 1; a < side; ++a)
            for (size_t b = 1; b < side; ++b)
                for (size_t c = 1; c < side; ++c) cells_[place(a, b, c)] += cells_[place(a, b - 1, c)];
        for (size_t a = 1; a < side; ++a)
            for (size_t b = 1; b < side; ++b)
                for (size_t c = 1; c < side; ++c) cells_[place(a, b, c)] += cells_[place(a, b, c - 1)];
    }

    [[nodiscard]] Moments sum(const Box& box) const {
        Moments total;
        for (unsigned corner = 0; corner < 8; ++corner) {
            const auto at = [&](Axis axis) { return (corner >> axis & 1U) != 0 ? box.low[axis] : box.high[axis]; };
            const bool minus = corner == 1 || corner == 2 || corner == 4 || corner == 7;
            total.add(cells_[place(at(0), at(1), at(2))], minus ? -1 : 1);
        }
        return total;
    }

    /// Cuts the box in two where the halves' means explain the most; false when nothing can be cut.
    [[nodiscard]] bool cut(Box& box, Box& other) const {
        const Moments whole = sum(box);
        double best = 0;
        Axis bestAxis = blueAxis;
        size_t bestPlace = 0;
        for (Axis axis = 0; axis < axes; ++axis) {
            for (size_t at = box.low[axis] + 1; at < box.high[axis]; ++at) {
                Box half = box;
                half.high[axis] = at;
                const Moments lower = sum(half);
                Moments upper = whole;
                upper -= lower;
                if (lower.count <= 0 || upper.count <= 0) continue;
                const double gain = lower.explained() + upper.explained();
                if (gain <= best) continue;
                best = gain;
                bestAxis = axis;
                bestPlace = at;
            }
        }
        if (bestPlace == 0) return false;
        other = box;
        other.low[bestAxis] = bestPlace;
        box.high[bestAxis] = bestPlace;
        return true;
    }

private:
    static size_t place(size_t a, size_t b, size_t c) { return (a * side + b) * side + c; }
    std::vector<Moments> cells_;
};

}  // namespace

std::vector<Pixel> representatives(std::span<const ColourCount> colours, size_t limit) {
    if (colours.empty() || limit == 0) return {};
    const Cube cube(colours);
    struct Part {
        Box box;
        double variance = 0;
    };
    std::vector<Part> parts{{{{0, 0, 0}, {side - 1, side - 1, side - 1}}, 0}};
    parts[0].variance = cube.sum(parts[0].box).variance();
    while (parts.size() < limit) {
        const auto widest = std::max_element(parts.begin(), parts.end(),
                                             [](const Part& a, const Part& b) { return a.variance < b.variance; });
        if (widest->variance <= 0) break;
        Part other;
        if (!cube.cut(widest->box, other.box)) {
            widest->variance = 0;
            continue;
        }
        widest->variance = cube.sum(widest->box).variance();
        other.variance = cube.sum(other.box).variance();
        parts.push_back(other);
    }
    std::vector<Pixel> result;
    for (const Part& part : parts) {
        const Moments sum = cube.sum(part.box);
        const auto mean = [&sum](Axis axis) {
            return static_cast<uint32_t>(std::lround(sum.colour[axis] / sum.count));
        };
        result.push_back(opaquePixel(mean(2), mean(1), mean(0)));
    }
    return result;
}

}  // namespace glimmer
