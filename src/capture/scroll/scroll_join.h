#pragma once

#include <string>
#include <vector>

#include "capture/scroll/frame_match.h"
#include "common/bitmap.h"
#include "common/result.h"

namespace glimmer {

/// Joins the frames of a window that is scrolled down into one long picture. What stays at the top or the bottom of
/// the window is in it once.
class ScrollJoin {
public:
    /// Where a frame was joined to the picture before it.
    struct Seam {
        int32_t row = 0;  ///< the first row of the picture that the frame added
        double sureness = 0;
        [[nodiscard]] bool doubtful() const { return sureness < 0.5; }
    };
    /// What a frame brought.
    enum class Step : uint8_t {
        Moved,    ///< something new
        Still,    ///< nothing new: the end of what scrolls
        Unknown,  ///< it has nothing in common with the one before; it was not taken
    };

    /// The first frame, Bgra32. `mostRows`: the picture grows to no more than that.
    ScrollJoin(TBitmap first, int32_t mostRows);

    /// The next frame, of the same size. Where the content cannot be matched, and `expected` says how far it must have
    /// moved (rows, 0: nobody knows), it is joined by that, and the seam is doubtful.
    Step add(TBitmap next, int32_t expected = 0);

    /// Rows that the picture has so far.
    [[nodiscard]] int32_t rows() const { return rows_ + last_.height() - from_; }
    [[nodiscard]] bool full() const { return rows() >= mostRows_; }
    [[nodiscard]] const std::vector<Seam>& seams() const { return seams_; }
    /// How the last frame followed on the one before.
    [[nodiscard]] const FrameMatch& lastMatch() const { return match_; }
    /// The picture. Nothing can be added afterwards. Fails, with a sentence, when it cannot be had.
    Result<TBitmap> take();

private:
    void append(TBitmap next, const FrameMatch& match);

    std::vector<TBitmap> strips_;  ///< what is joined, from the top down
    int32_t rows_ = 0;             ///< of all strips
    TBitmap last_;                 ///< its rows from from_ on end the picture
    int32_t from_ = 0;
    ScrollFrame lastFrame_;
    int32_t shift_ = 0;  ///< how far last_ is to the right of the first frame
    FrameMatch match_;
    std::vector<Seam> seams_;
    int32_t mostRows_;
};

/// What the user is to know of seams that are doubtful, for the capture's note; empty when all are sure.
std::string seamNote(const std::vector<ScrollJoin::Seam>& seams);

}  // namespace glimmer
