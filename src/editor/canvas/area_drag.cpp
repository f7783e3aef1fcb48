#include "editor/canvas/area_drag.h"

#include <algorithm>
#include <utility>

namespace glimmer {

namespace {

/// An area that is no larger, in device pixels, is a click.
constexpr int32_t clickSize = 2;

}  // namespace

AreaDrag::AreaDrag(const CanvasContext& context, Kind kind, Point at)
    : context_(context), kind_(kind), pressedAt_(at), former_(context.document.selection()) {}

std::shared_ptr<AreaDrag> AreaDrag::drawing(const CanvasContext& context, Point at, Outline outline, bool adding) {
    std::shared_ptr<AreaDrag> drag(new AreaDrag(context, Kind::Draw, context.inside(at)));
    drag->outline_ = outline;
    drag->adding_ = adding && !drag->former_.empty();
    if (!drag->adding_) context.document.select({});
    return drag;
}

std::shared_ptr<AreaDrag> AreaDrag::grabbed(const CanvasContext& context, Point at, bool movable) {
    const Selection& selection = context.document.selection();
    if (selection.empty()) return nullptr;
    const int32_t handle = hasHandles(selection) ? handleAt(selection.rect, at, context.hitSize()) : noHandle;
    if (handle == noHandle && !(movable && selection.pixels(context.document.size()).contains(at))) return nullptr;
    std::shared_ptr<AreaDrag> drag(new AreaDrag(context, handle == noHandle ? Kind::Move : Kind::Resize, at));
    drag->handle_ = handle;
    return drag;
}

void AreaDrag::moveTo(Point at, Modifiers held) {
    const Point way{at.x - pressedAt_.x, at.y - pressedAt_.y};
    switch (kind_) {
        case Kind::Draw:
            draw(at, held.shift);
            break;
        case Kind::Move:
            carry(way);
            break;
        case Kind::Resize:
            resize(way);
            break;
    }
}

void AreaDrag::draw(Point at, bool square) {
    const Size size = context_.document.size();
    const Rect rect = spanned(pressedAt_, context_.inside(square ? squared(pressedAt_, at) : at));
    Selection area = outline_ == Outline::Ellipse ? Selection::ellipse(rect) : Selection::rectangle(rect);
    if (adding_) area = Selection::freeForm(former_.pixels(size).united(area.pixels(size)));
    context_.document.select(std::move(area));
}

void AreaDrag::resize(Point way) {
    Selection area = former_;
    area.rect = resizedByHandle(area.rect, handle_, way.x, way.y).normalized().intersected(context_.picture());
    if (!area.rect.empty()) context_.document.select(std::move(area));
}

void AreaDrag::carry(Point way) {
    Selection area = former_;
    const Size size = context_.document.size();
    const Rect bounds = area.bounds(size);
    const int32_t dx = std::clamp(way.x, -bounds.left, size.width - bounds.right);
    const int32_t dy = std::clamp(way.y, -bounds.top, size.height - bounds.bottom);
    area.rect = area.rect.moved(dx, dy);
    for (Point& corner : area.corners) corner = {corner.x + dx, corner.y + dy};
    area.region = area.region.moved(dx, dy);
    context_.document.select(std::move(area));
}

void AreaDrag::finish() {
    if (kind_ != Kind::Draw || adding_) return;
    const Rect rect = context_.document.selection().bounds(context_.document.size());
    const int32_t click = context_.view.lengthInPicture(clickSize);
    if (rect.width() <= click && rect.height() <= click) context_.document.select({});
}

void AreaDrag::cancel() { context_.document.select(former_); }

std::optional<CanvasCursor> AreaDrag::cursor() const {
    if (kind_ == Kind::Move) return CanvasCursor::Move;
    if (kind_ == Kind::Resize) return cursorOverHandle(context_.document.selection().rect, handle_);
    return std::nullopt;
}

}  // namespace glimmer
