#include "editor/annotations/uShapes.h"

namespace glimmer {

Rect TTextObject::textArea(const Rect& label) {
    return {label.left + labelPaddingX, label.top + labelPaddingY, label.right - labelPaddingX,
            label.bottom - labelPaddingY};
}

Size TTextObject::labelSize(Size text) { return {text.width + 2 * labelPaddingX, text.height + 2 * labelPaddingY}; }

void TTextObject::boundingRect(const TBBShape& /*owner*/, Rect& rect) const { rect = rectangle.normalized(); }

bool TTextObject::hit(const TBBShape& /*owner*/, Point point, const HitReach& /*reach*/) const {
    return rectangle.normalized().contains(point);
}

bool TTextObject::mouseDown(TBBShape& owner, Point point, const HitReach& reach) {
    if (!TDrawObject::mouseDown(owner, point, reach)) return false;
    startRect_ = rectangle;
    return true;
}

void TTextObject::mouseMove(TBBShape& owner, Point point) {
    if (activeHandle_ == noHandle) {
        // From the start of the drag, not step by step: a label that snapped must come loose again.
        owner.moveLabelTo({startRect_.left + point.x - pressedAt_.x, startRect_.top + point.y - pressedAt_.y});
        return;
    }
    rectangle = resized(point);
    settings.position = freeTextPosition;
}

void TTextObject::release(TBBShape& owner) {
    TDrawObject::release(owner);
    rectangle = rectangle.normalized();
    owner.layOut();
}

bool TTextObject::operator==(const TTextObject& other) const {
    return settings == other.settings && rectangle == other.rectangle && text == other.text;
}

}  // namespace glimmer
