#include "output/print/preview_painter.h"

#include <algorithm>
#include <cmath>

#include "imaging/graphutils.h"
#include "imaging/scaling.h"

namespace glimmer {

namespace {

constexpr Colour paperColour = rgb(255, 255, 255);
constexpr Colour edgeColour = rgb(232, 232, 232);  // of what the printer does not reach
constexpr Colour marginColour = rgb(120, 150, 210);
constexpr Colour boxColour = rgb(200, 40, 40);
constexpr Colour focusColour = rgb(40, 90, 200);
constexpr Colour handleColour = rgb(255, 255, 255);
constexpr int32_t dash = 4;
constexpr int32_t shadow = 3;
constexpr uint8_t washedOut = 160;  // of 255, over what is not printed
/// A zoomed picture of more is reduced in the part that can be seen only.
constexpr int64_t mostKept = 3000000;

void frame(TBitmap& target, const Rect& box, Colour colour, bool dashed) {
    const Rect inside = box.intersected(target.bounds().inflated(1));
    const auto across = [&](int32_t y) {
        for (int32_t x = inside.left; x < inside.right; ++x)
            if (!dashed || (x - box.left) / dash % 2 == 0) target.fill({x, y, x + 1, y + 1}, colour);
    };
    const auto down = [&](int32_t x) {
        for (int32_t y = inside.top; y < inside.bottom; ++y)
            if (!dashed || (y - box.top) / dash % 2 == 0) target.fill({x, y, x + 1, y + 1}, colour);
    };
    across(box.top);
    across(box.bottom - 1);
    down(box.left);
    down(box.right - 1);
}

void washOut(TBitmap& target, const Rect& area) {
    const Rect inside = area.intersected(target.bounds());
    for (int32_t y = inside.top; y < inside.bottom; ++y) {
        uint8_t* p = target.row(y) + static_cast<size_t>(inside.left) * 4;
        for (int32_t x = inside.left; x < inside.right; ++x, p += 4)
            for (size_t c = 0; c < 3; ++c) p[c] = static_cast<uint8_t>(p[c] + (255 - p[c]) * washedOut / 255);
    }
}

/// Of the sheet, what lies outside `reach`.
void washOutEdges(TBitmap& target, const Rect& sheet, const Rect& reach, const Rect& box) {
    const Rect parts[] = {{sheet.left, sheet.top, sheet.right, reach.top},
                          {sheet.left, reach.bottom, sheet.right, sheet.bottom},
                          {sheet.left, reach.top, reach.left, reach.bottom},
                          {reach.right, reach.top, sheet.right, reach.bottom}};
    for (const Rect& part : parts) washOut(target, part.intersected(box));
}

}  // namespace

void PreviewPainter::paint(TBitmap& target, const PreviewView& view, const PrintLayout& layout, const PrintSheet& sheet,
                           const TBitmap& reduced, const Look& look) {
    const PrintPaper& paper = layout.paper();
    const Rect page = view.pixels({0, 0, paper.width, paper.height});
    const Rect reach = view.pixels(paper.printable);
    const Rect box = view.pixels(sheet.place);
    target.fill(target.bounds(), look.desk);
    target.fill(page.moved(shadow, shadow),
                rgb(redOf(look.desk) / 2U, greenOf(look.desk) / 2U, blueOf(look.desk) / 2U));
    target.fill(page, edgeColour);
    target.fill(reach, paperColour);
    paintPicture(target, box, page, sheet, layout.picture(), reduced, look.grayscale);
    washOutEdges(target, page, reach, box);
    if (look.foot != nullptr) {
        const Rect place = view.pixels(layout.footPlace());
        const Result<TBitmap> line = resized(*look.foot, std::max(place.width(), 1), std::max(place.height(), 1));
        if (line) copyPixels(target, {place.left, place.top}, *line);
    }
    frame(target, view.pixels(layout.area()), marginColour, true);
    if (look.boundingBox) frame(target, box, boxColour, false);
    for (auto grip = static_cast<uint8_t>(PreviewGrip::TopLeft); grip <= static_cast<uint8_t>(PreviewGrip::Left);
         ++grip) {
        const Point at = gripPoint(static_cast<PreviewGrip>(grip), box);
        const Rect square = Rect{at.x, at.y, at.x + 1, at.y + 1}.inflated(look.handle);
        target.fill(square, look.boundingBox ? boxColour : focusColour);
        target.fill(square.inflated(-1), handleColour);
    }
    if (look.focus != Size{}) frame(target, {0, 0, look.focus.width, look.focus.height}, focusColour, false);
}

void PreviewPainter::paintPicture(TBitmap& target, const Rect& box, const Rect& clip, const PrintSheet& sheet,
                                  Size whole, const TBitmap& reduced, bool inGrey) {
    if (box.empty() || reduced.empty()) return;
    const Rect seen = box.intersected(clip).intersected(target.bounds());
    if (seen.empty()) return;
    const bool all = static_cast<int64_t>(box.width()) * box.height() <= mostKept;
    const Rect shown = all ? box : seen;
    // From pixels of the window to those of the reduced picture.
    const double acrossScale = static_cast<double>(sheet.source.width()) / box.width() * reduced.width() / whole.width;
    const double downScale =
        static_cast<double>(sheet.source.height()) / box.height() * reduced.height() / whole.height;
    const double top = static_cast<double>(sheet.source.top) * reduced.height() / whole.height;
    const auto across = [&](int32_t x) { return static_cast<int32_t>(std::lround((x - box.left) * acrossScale)); };
    const auto down = [&](int32_t y) { return static_cast<int32_t>(std::lround(top + (y - box.top) * downScale)); };
    Rect part = Rect{across(shown.left), down(shown.top), across(shown.right), down(shown.bottom)};
    part.right = std::max(part.right, part.left + 1);
    part.bottom = std::max(part.bottom, part.top + 1);
    const Drawn wanted{&reduced, part, {shown.width(), shown.height()}, inGrey};
    if (wanted != drawn_) {
        Result<TBitmap> made = resized(reduced, part, shown.width(), shown.height());
        if (!made) return;
        if (inGrey) grayscale(*made);
        picture_ = made.take();
        drawn_ = wanted;
    }
    copyPixels(target, {seen.left, seen.top}, picture_, seen.moved(-shown.left, -shown.top));
}

}  // namespace glimmer
