#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "common/bitmap.h"
#include "common/colour.h"
#include "common/geometry.h"

namespace glimmer {

/// Free-hand ink while it is drawn: strokes of pen and eraser on a transparent layer in picture coordinates. The
/// layer grows with the strokes; the last stroke can be taken back.
class InkLayer {
public:
    /// `picture` limits the layer: ink outside it is lost.
    explicit InkLayer(Size picture) : limit_{0, 0, picture.width, picture.height} {}

    /// Starts from a drawing that was made before, as it is shown: stretched to `rect`, of which nothing is lost. It
    /// cannot be taken back. Fails for want of memory.
    Status load(const TBitmap& drawing, const Rect& rect);

    /// A stroke begins, goes on and ends. Both answer the picture pixels that changed.
    Rect begin(Point at, bool eraser, Colour colour, int32_t width);
    Rect moveTo(Point at);
    void end();
    [[nodiscard]] bool drawing() const { return drawing_; }
    /// Takes the last stroke back; the area that changed, empty when there is none.
    Rect undoStroke();
    /// Empties the layer; the area that changed.
    Rect clear();

    /// Whether strokes, or clear(), make it another drawing than what was loaded.
    [[nodiscard]] bool changed() const { return cleared_ || !strokes_.empty(); }
    [[nodiscard]] bool empty() const { return bitmap_.empty(); }
    /// The layer, straight alpha, and where its top-left corner lies.
    [[nodiscard]] const TBitmap& bitmap() const { return bitmap_; }
    [[nodiscard]] Point at() const { return at_; }
    /// The ink cut to what it covers, and its place; an empty picture when there is no ink. Fails for want of memory.
    struct Finished {
        TBitmap picture;
        Rect rect;
    };
    [[nodiscard]] Result<Finished> finished() const;
    /// Whether there is no ink at all.
    [[nodiscard]] bool blank() const { return inked().empty(); }

private:
    struct Stroke {
        std::vector<Point> points;
        bool eraser = false;
        Colour colour = 0;
        int32_t width = 1;
    };
    bool reserve(const Rect& area);
    Rect draw(const Stroke& stroke, size_t first);
    [[nodiscard]] Rect inked() const;
    [[nodiscard]] Rect covered() const { return bitmap_.bounds().moved(at_.x, at_.y); }

    Rect limit_;
    TBitmap bitmap_;
    Point at_;
    std::vector<Stroke> strokes_;
    bool drawing_ = false;
    bool cleared_ = false;
    TBitmap loaded_;
    Point loadedAt_;
};

}  // namespace glimmer
