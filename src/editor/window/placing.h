#pragma once

#include <algorithm>

namespace glimmer {

// Where a window goes beside another thing; along one axis, in pixels.

/// Behind the thing that reaches from `first` to `last`, or before it where `room` ends too early.
constexpr int placedBeside(int first, int last, int length, int room, int gap) {
    return last + gap + length > room ? first - gap - length : last + gap;
}

/// As near to `at` as it fits from `low` to `high`; at `low` when it is too long.
constexpr int placedWithin(int at, int length, int low, int high) {
    return std::clamp(at, low, std::max(low, high - length));
}

}  // namespace glimmer
