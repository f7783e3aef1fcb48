#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "common/bitmap.h"

// Two pictures of a window, before and after it was scrolled down: how far did its content move? Parts that stay where
// they are (headers, footers, tool bars) are told from those that move.

namespace glimmer {

/// What matching needs of a picture of the window; made once for each.
class ScrollFrame {
public:
    /// Blocks of a row whose mean brightness is compared first, one byte each.
    static constexpr size_t blocks = 16;
    using Signature = std::array<uint8_t, blocks>;

    ScrollFrame() = default;
    /// Of a Bgra32 picture.
    explicit ScrollFrame(const TBitmap& picture);

    [[nodiscard]] Size size() const { return size_; }
    /// Brightness of a row's pixels, size().width of them.
    [[nodiscard]] const uint8_t* row(int32_t y) const {
        return grey_.data() + static_cast<size_t>(y) * static_cast<size_t>(size_.width);
    }
    [[nodiscard]] const Signature& signature(int32_t y) const { return signatures_[static_cast<size_t>(y)]; }
    /// How much finding this row again says, 0 to 1: little where it looks like the one above it.
    [[nodiscard]] float weight(int32_t y) const { return weights_[static_cast<size_t>(y)]; }

private:
    Size size_;
    std::vector<uint8_t> grey_;
    std::vector<Signature> signatures_;
    std::vector<float> weights_;
};

/// How one frame follows on another.
struct FrameMatch {
    int32_t moved = 0;    ///< rows that the content went up; 0: nothing moved, or nothing was recognised
    int32_t shift = 0;    ///< pixels that it went to the right
    int32_t header = 0;   ///< rows at the top that stay
    int32_t footer = 0;   ///< rows at the bottom that stay
    double sureness = 0;  ///< 0 to 1; doubtful() below a half
    bool still = false;   ///< both frames show the same

    [[nodiscard]] bool doubtful() const { return sureness < 0.5; }
};

/// Finds out how `after` follows on `before`, both of one size. Where a pattern repeats, so that several distances
/// fit alike, the one nearest to `expected` rows is taken (0: unknown, the shortest) and the match is doubtful.
/// Rows are recognised although some of their pixels differ: a caret, a clock, a scroll bar.
FrameMatch matchFrames(const ScrollFrame& before, const ScrollFrame& after, int32_t expected = 0);

}  // namespace glimmer
