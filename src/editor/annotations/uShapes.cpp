#include "editor/annotations/uShapes.h"

#include <memory>
#include <utility>

#include "common/assertion.h"
#include "common/text.h"

namespace glimmer {

namespace {

constexpr std::array<Part, partCount> allParts = {Part::Shape, Part::Text, Part::Line, Part::Number};
/// From below to above as a press finds them. The line is painted over the label's edge, but its end there is too
/// small to be meant.
constexpr std::array<Part, partCount> pressOrder = {Part::Shape, Part::Line, Part::Text, Part::Number};

/// A drawing of one transparent pixel, for drawings whose picture was lost.
std::shared_ptr<const TBitmap> emptyDrawing() {
    Result<TBitmap> picture = TBitmap::create(1, 1, PixelFormat::Bgra32);
    return picture ? std::make_shared<const TBitmap>(picture.take()) : nullptr;
}

bool samePicture(const std::shared_ptr<const TBitmap>& a, const std::shared_ptr<const TBitmap>& b) {
    return a == b || (a != nullptr && b != nullptr && samePixels(*a, *b));
}

}  // namespace

bool TShapeDescriptor::operator==(const TShapeDescriptor& other) const {
    return id == other.id && style == other.style && shapeRect == other.shapeRect && textRect == other.textRect &&
           text == other.text && number == other.number && samePicture(drawing, other.drawing);
}

void clampDescriptor(TShapeDescriptor& descriptor) {
    clampSettings(descriptor.style);
    descriptor.shapeRect = clampRect(descriptor.shapeRect.normalized());
    descriptor.textRect = clampRect(descriptor.textRect.normalized());
    if (descriptor.text.size() > maxTextUnits) descriptor.text = firstUnits(descriptor.text, maxTextUnits);
    descriptor.number = clampStepNumber(descriptor.number);
    if (descriptor.style.shape.kind == ShapeKind::Drawing && descriptor.drawing == nullptr)
        descriptor.drawing = emptyDrawing();
    if (descriptor.style.shape.kind != ShapeKind::Drawing) descriptor.drawing.reset();
}

TBBShape::TBBShape(const TShapeStyle& settings, const Rect& rect) {
    setSettings(settings);
    setShapeRect(rect);
}

TBBShape::TBBShape(const TShapeDescriptor& descriptor) : id_(descriptor.id) {
    setSettings(descriptor.style);
    shape.rectangle = descriptor.shapeRect;
    shape.drawing = descriptor.drawing;
    text.rectangle = descriptor.textRect;
    text.text = descriptor.text;
    number.number = descriptor.number;
}

TShapeDescriptor TBBShape::describe() const {
    return {id_, settings(), shape.rectangle, text.rectangle, text.text, number.number, shape.drawing};
}

bool TBBShape::operator==(const TBBShape& other) const {
    return id_ == other.id_ && styleName == other.styleName && shape == other.shape && text == other.text &&
           line == other.line && number == other.number;
}

TDrawObject& TBBShape::part(Part index) {
    switch (index) {
        case Part::Shape:
            return shape;
        case Part::Text:
            return text;
        case Part::Line:
            return line;
        case Part::Number:
            break;
    }
    return number;
}

const TDrawObject& TBBShape::part(Part index) const {
    return const_cast<TBBShape*>(this)->part(index);  // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

bool TBBShape::anyVisible() const {
    return shape.isVisible() || text.isVisible() || line.isVisible() || number.isVisible();
}

// --- layout

void TBBShape::layOut() {
    shape.rectangle = clampRect(shape.rectangle);
    if (text.settings.position != freeTextPosition) {
        const Rect label = text.rectangle.normalized();
        text.rectangle =
            labelRect(shape.rectangle.normalized(), {label.width(), label.height()}, text.settings.position);
    }
    text.rectangle = clampRect(text.rectangle);
}

void TBBShape::moveBy(int32_t dx, int32_t dy) {
    dx = clampCoordinate(dx);
    dy = clampCoordinate(dy);
    shape.rectangle = shape.rectangle.moved(dx, dy);
    text.rectangle = text.rectangle.moved(dx, dy);
    layOut();
}

void TBBShape::moveLabelTo(Point topLeft) {
    topLeft = {clampCoordinate(topLeft.x), clampCoordinate(topLeft.y)};
    text.rectangle = text.rectangle.moved(topLeft.x - text.rectangle.left, topLeft.y - text.rectangle.top);
    text.settings.position = snappedPosition(shape.rectangle.normalized(), text.rectangle);
    layOut();
}

void TBBShape::setTextPosition(int32_t position) {
    text.settings.position = clampTextPosition(position);
    layOut();
}

void TBBShape::setShapeRect(const Rect& rect) {
    shape.rectangle = rect.normalized();
    layOut();
}

void TBBShape::setLabelSize(Size size) {
    text.rectangle.right = text.rectangle.left + size.width;
    text.rectangle.bottom = text.rectangle.top + size.height;
    layOut();
}

std::optional<LineRoute> TBBShape::route() const {
    return lineRoute(shape.rectangle, shape.isEllipse(), text.rectangle);
}

std::vector<TBBShape::FreeEnd> TBBShape::freeLineEnds() const {
    std::vector<FreeEnd> ends;
    const std::optional<LineRoute> line_ = line.isVisible() ? route() : std::nullopt;
    if (!line_) return ends;
    if (!shape.isVisible()) ends.push_back({true, line_->front});
    if (!text.isVisible()) ends.push_back({false, line_->back});
    return ends;
}

void TBBShape::moveFreeEnd(bool front, int32_t dx, int32_t dy) {
    text.settings.position = freeTextPosition;
    Rect& anchor = front ? shape.rectangle : text.rectangle;
    anchor = anchor.moved(clampCoordinate(dx), clampCoordinate(dy));
    layOut();
}

Rect TBBShape::bounds() const {
    Rect all;
    for (const Part index : allParts) {
        if (!part(index).isVisible()) continue;
        Rect one;
        part(index).boundingRect(*this, one);
        all = all.united(one);
    }
    return all.empty() ? Rect{} : all.inflated(shadowReach);
}

std::vector<GuideLine> TBBShape::guides() const {
    const Rect rect = shape.rectangle.normalized();
    if (text.settings.position != freeTextPosition) return positionGuides(rect, text.settings.position);
    return freeLabelGuides(rect, text.rectangle.normalized());
}

std::optional<Part> TBBShape::partAt(Point point, const HitReach& reach) const {
    for (size_t i = partCount; i-- > 0;) {
        const TDrawObject& candidate = part(pressOrder[i]);
        if (candidate.isVisible() && candidate.hit(*this, point, reach)) return pressOrder[i];
    }
    return std::nullopt;
}

Part TBBShape::handlePart() const {
    if (!text.isVisible()) return Part::Shape;
    return activePart_ == Part::Text || !shape.isVisible() ? Part::Text : Part::Shape;
}

Rect TBBShape::handleRect() const { return handlePart() == Part::Text ? text.rectangle : shape.rectangle; }

// --- pressing

bool TBBShape::grabHandleAt(Point point, int32_t hitSize) {
    const Part index = handlePart();
    const int32_t handle = handleAt(handleRect(), point, hitSize);
    if (handle == noHandle || !hasHandles()) return false;
    activePart_ = index;
    part(index).grabHandle(handle);
    return true;
}

bool TBBShape::mouseDown(Point point, const HitReach& reach) {
    point = {clampCoordinate(point.x), clampCoordinate(point.y)};
    TDrawObject& active = part(activePart_);
    if (active.isVisible() && active.activeHandle() == noHandle) {
        bool taken = false;
        for (const Part index : pressOrder) {
            if (!part(index).mouseDown(*this, point, reach)) continue;
            if (taken) part(activePart_).release(*this);  // a part above it takes the drag over
            activePart_ = index;
            taken = true;
        }
        return taken;
    }
    if (active.isVisible()) {
        const bool taken = active.mouseDown(*this, point, reach);
        layOut();
        return taken;
    }
    size_t f = 0;
    while (f < partCount && !part(allParts[f]).isVisible()) ++f;
    GLIMMER_ASSERT(f != partCount, "f != ARRAYSIZE(vObjects)", "uShapes");
    if (!part(allParts[f]).mouseDown(*this, point, reach)) return false;
    activePart_ = allParts[f];
    return true;
}

void TBBShape::mouseMove(Point point) {
    point = {clampCoordinate(point.x), clampCoordinate(point.y)};
    TDrawObject& active = part(activePart_);
    if (active.dragging()) active.mouseMove(*this, point);
}

void TBBShape::mouseUp() {
    for (const Part index : allParts) part(index).release(*this);
}

void TBBShape::settle() {
    for (const Part index : allParts) part(index).letGo();
    activePart_ = Part::Shape;
    if (shape.settings.kind != ShapeKind::Drawing) shape.drawing.reset();
}

// --- styles

void TBBShape::applyStyle(const TShapeStyle& style, bool withVisibility) {
    const TShapeStyle before = settings();
    TShapeStyle after = style;
    after.keepPlacesOf(before, withVisibility);
    // Ink stays ink and a shape stays a shape: a style cannot make or lose a picture.
    if (before.shape.kind == ShapeKind::Drawing || style.shape.kind == ShapeKind::Drawing)
        after.shape.kind = before.shape.kind;
    setSettings(after);
    layOut();
}

TShapeStyle TBBShape::settings() const {
    return {styleName, shape.settings, text.settings, line.settings, number.settings};
}

void TBBShape::setSettings(const TShapeStyle& settings) {
    styleName = settings.name;
    shape.settings = settings.shape;
    text.settings = settings.text;
    line.settings = settings.line;
    number.settings = settings.number;
}

TBBShape pictureAnnotation(TShapeStyle style, TBitmap picture, Point at) {
    const Size size = picture.size();
    style.shape.kind = ShapeKind::Drawing;
    style.shape.visible = true;
    style.text.visible = style.line.visible = style.number.visible = false;
    TBBShape shape(style, {at.x, at.y, at.x + size.width, at.y + size.height});
    shape.shape.drawing = std::make_shared<const TBitmap>(std::move(picture));
    return shape;
}

}  // namespace glimmer
