#include "editor/canvas/ink_layer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "editor/annotations/shape_geometry.h"
#include "imaging/scaling.h"

namespace glimmer {

namespace {

/// The layer grows by this much at a time, so that a long stroke does not copy it at each step.
constexpr int32_t growth = 256;
/// A stroke keeps no more points; a longer one goes on as a new one.
constexpr size_t maxPoints = 100000;

/// How much of a pixel's area a round pen covers, from the distance of the pixel's centre to the pen's way.
double coverage(double distance, double radius) { return std::clamp(radius + 0.5 - distance, 0.0, 1.0); }

void inkPixel(uint8_t* p, Colour colour, double cover) {
    const double below = p[3] / 255.0;
    const double alpha = cover + below * (1 - cover);
    const auto mix = [&](uint8_t old, uint8_t ink) {
        return static_cast<uint8_t>(std::lround((ink * cover + old * below * (1 - cover)) / alpha));
    };
    p[0] = mix(p[0], blueOf(colour));
    p[1] = mix(p[1], greenOf(colour));
    p[2] = mix(p[2], redOf(colour));
    p[3] = static_cast<uint8_t>(std::lround(alpha * 255));
}

/// What is gone leaves no colour behind its transparency: a saved file would hold it.
void erasePixel(uint8_t* p, double cover) {
    p[3] = std::min(p[3], static_cast<uint8_t>(std::lround((1 - cover) * 255)));
    if (p[3] == 0) p[0] = p[1] = p[2] = 0;
}

}  // namespace

Status InkLayer::load(const TBitmap& drawing, const Rect& rect) {
    const Rect place = rect.normalized();
    Result<TBitmap> copy = drawing.converted(PixelFormat::Bgra32);
    if (copy && copy->size() != Size{place.width(), place.height()} && !place.empty())
        copy = resized(*copy, place.width(), place.height());
    if (!copy) return copy.failure();
    loaded_ = copy.take();
    loadedAt_ = {place.left, place.top};
    limit_ = limit_.united(place);
    if (!reserve(place)) return Failure{"There is not enough memory for the drawing."};
    copyPixels(bitmap_, {place.left - at_.x, place.top - at_.y}, loaded_);
    return {};
}

bool InkLayer::reserve(const Rect& area) {
    const Rect need = area.intersected(limit_);
    if (need.empty()) return false;
    const Rect have = covered();
    if (!bitmap_.empty() && have.united(need) == have) return true;
    const Rect grown = have.united(need.inflated(growth).intersected(limit_));
    Result<TBitmap> larger = TBitmap::create(grown.width(), grown.height(), PixelFormat::Bgra32);
    if (!larger) return !bitmap_.empty();  // what lies outside is lost, the rest goes on
    if (!bitmap_.empty()) copyPixels(*larger, {have.left - grown.left, have.top - grown.top}, bitmap_);
    bitmap_ = larger.take();
    at_ = {grown.left, grown.top};
    return true;
}

Rect InkLayer::draw(const Stroke& stroke, size_t first) {
    Rect changed;
    for (size_t i = first; i < stroke.points.size(); ++i) {
        const Point b = stroke.points[i];
        const Point a = i == 0 ? b : stroke.points[i - 1];
        const double radius = stroke.width / 2.0;
        const auto reach = static_cast<int32_t>(std::ceil(radius)) + 1;
        const Rect area =
            Rect{std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x) + 1, std::max(a.y, b.y) + 1}.inflated(
                reach);
        if (!stroke.eraser && !reserve(area)) continue;
        const Rect part = area.intersected(covered());
        for (int32_t y = part.top; y < part.bottom; ++y) {
            uint8_t* p = bitmap_.row(y - at_.y) + static_cast<size_t>(part.left - at_.x) * 4;
            for (int32_t x = part.left; x < part.right; ++x, p += 4) {
                const double cover = coverage(std::sqrt(squaredDistance({x, y}, a, b)), radius);
                if (cover <= 0) continue;
                if (stroke.eraser)
                    erasePixel(p, cover);
                else
                    inkPixel(p, stroke.colour, cover);
            }
        }
        if (!part.empty()) changed = changed.united(part);
    }
    return changed;
}

Rect InkLayer::begin(Point at, bool eraser, Colour colour, int32_t width) {
    strokes_.push_back({{at}, eraser, colour, width});
    drawing_ = true;
    return draw(strokes_.back(), 0);
}

Rect InkLayer::moveTo(Point at) {
    if (!drawing_) return {};
    Stroke& stroke = strokes_.back();
    if (stroke.points.back() == at || stroke.points.size() >= maxPoints) return {};
    stroke.points.push_back(at);
    return draw(stroke, stroke.points.size() - 1);
}

void InkLayer::end() { drawing_ = false; }

Rect InkLayer::undoStroke() {
    end();
    if (strokes_.empty()) return {};
    strokes_.pop_back();
    const Rect before = covered();
    std::vector<Stroke> strokes = std::exchange(strokes_, {});
    std::fill(bitmap_.bytes().begin(), bitmap_.bytes().end(), uint8_t{0});
    if (!loaded_.empty()) copyPixels(bitmap_, {loadedAt_.x - at_.x, loadedAt_.y - at_.y}, loaded_);
    for (const Stroke& stroke : strokes) draw(stroke, 0);
    strokes_ = std::move(strokes);
    return before;
}

Rect InkLayer::clear() {
    const Rect before = covered();
    bitmap_ = TBitmap();
    loaded_ = TBitmap();
    at_ = {};
    strokes_.clear();
    drawing_ = false;
    cleared_ = true;
    return before;
}

/// The smallest rectangle around all ink, in the layer's pixels.
Rect InkLayer::inked() const {
    Rect ink;
    for (int32_t y = 0; y < bitmap_.height(); ++y) {
        const uint8_t* alpha = bitmap_.row(y) + 3;
        int32_t first = 0;
        while (first < bitmap_.width() && alpha[static_cast<size_t>(first) * 4] == 0) ++first;
        if (first == bitmap_.width()) continue;
        int32_t last = bitmap_.width() - 1;
        while (alpha[static_cast<size_t>(last) * 4] == 0) --last;
        ink = ink.united({first, y, last + 1, y + 1});
    }
    return ink;
}

Result<InkLayer::Finished> InkLayer::finished() const {
    const Rect ink = inked();
    if (ink.empty()) return Finished{};
    Result<TBitmap> part = bitmap_.cropped(ink);
    if (!part) return part.failure();
    return Finished{part.take(), ink.moved(at_.x, at_.y)};
}

}  // namespace glimmer
