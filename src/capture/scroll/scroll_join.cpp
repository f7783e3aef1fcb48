#include "capture/scroll/scroll_join.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "common/assertion.h"

namespace glimmer {

namespace {

/// The frame as it lies under the first one: moved to the left by that many pixels, its edge drawn out where nothing
/// was seen.
void align(TBitmap& picture, int32_t shift) {
    constexpr size_t pixel = 4;
    const auto by = static_cast<size_t>(std::abs(shift));
    const auto width = static_cast<size_t>(picture.width());
    if (by == 0 || by >= width) return;
    for (int32_t y = 0; y < picture.height(); ++y) {
        uint8_t* row = picture.row(y);
        uint8_t* target = shift > 0 ? row : row + by * pixel;
        const uint8_t* source = shift > 0 ? row + by * pixel : row;
        std::memmove(target, source, (width - by) * pixel);
        const uint8_t* edge = shift > 0 ? row + (width - by - 1) * pixel : row + by * pixel;
        uint8_t* gap = shift > 0 ? row + (width - by) * pixel : row;
        for (size_t x = 0; x < by; ++x) std::memmove(gap + x * pixel, edge, pixel);
    }
}

}  // namespace

ScrollJoin::ScrollJoin(TBitmap first, int32_t mostRows)
    : last_(std::move(first)), lastFrame_(last_), mostRows_(mostRows) {}

ScrollJoin::Step ScrollJoin::add(TBitmap next, int32_t expected) {
    GLIMMER_ASSERT(next.size() == last_.size(), "next.size==last.size", "uScrollJoin");
    ScrollFrame frame(next);
    match_ = matchFrames(lastFrame_, frame, expected);
    if (match_.still) return Step::Still;
    if (match_.moved == 0) {
        if (expected <= 0 || expected > next.height()) return Step::Unknown;
        match_ = {expected};
    }
    shift_ += match_.shift;
    append(std::move(next), match_);
    lastFrame_ = std::move(frame);
    return Step::Moved;
}

void ScrollJoin::append(TBitmap next, const FrameMatch& match) {
    // Content that is counted to the footer is at both places alike; only rows that are strips already must stay.
    const int32_t end = std::max(last_.height() - match.footer, from_);
    if (end > from_) {
        Result<TBitmap> strip = last_.cropped({0, from_, last_.width(), end});
        if (!strip) return;
        strips_.push_back(strip.take());
        rows_ += end - from_;
    }
    from_ = end - match.moved;
    last_ = std::move(next);
    align(last_, shift_);
    seams_.push_back({rows_, match.sureness});
}

Result<TBitmap> ScrollJoin::take() {
    const int32_t height = std::min(rows(), std::max(mostRows_, last_.height()));
    Result<TBitmap> picture = TBitmap::create(last_.width(), height, PixelFormat::Bgra32);
    if (!picture) return picture;
    int32_t y = 0;
    for (TBitmap& strip : strips_) {
        copyPixels(*picture, {0, y}, strip);
        y += strip.height();
        strip = {};
    }
    copyPixels(*picture, {0, y}, last_, {0, from_, last_.width(), last_.height()});
    return picture;
}

std::string seamNote(const std::vector<ScrollJoin::Seam>& seams) {
    constexpr size_t mostNamed = 8;
    std::string rows;
    size_t count = 0;
    for (const ScrollJoin::Seam& seam : seams) {
        if (!seam.doubtful()) continue;
        if (++count <= mostNamed) rows += (count == 1 ? "" : ", ") + std::to_string(seam.row);
    }
    if (count == 0) return {};
    if (count > mostNamed) rows += " and " + std::to_string(count - mostNamed) + " more";
    return "The parts may not fit together at row" + std::string(count == 1 ? " " : "s ") + rows +
           ": the window shows the same again and again there, or changed while it was scrolled.";
}

}  // namespace glimmer
