#include "editor/annotations/shapes_list.h"

#include <algorithm>

namespace glimmer {

uint32_t TShapesList::freeId() {
    do {
        ++lastId_;
    } while (lastId_ == 0 || find(lastId_) != nullptr);
    return lastId_;
}

uint32_t TShapesList::add(TBBShape shape) {
    shape.setId(freeId());
    shapes_.push_back(std::move(shape));
    return shapes_.back().id();
}

uint32_t TShapesList::insert(size_t index, TBBShape shape) {
    if (shape.id() == 0 || find(shape.id()) != nullptr) shape.setId(freeId());
    const uint32_t id = shape.id();
    shapes_.insert(shapes_.begin() + static_cast<std::ptrdiff_t>(std::min(index, size())), std::move(shape));
    return id;
}

bool TShapesList::remove(uint32_t id) {
    return std::erase_if(shapes_, [id](const TBBShape& shape) { return shape.id() == id; }) > 0;
}

std::optional<size_t> TShapesList::indexOf(uint32_t id) const {
    for (size_t i = 0; i < shapes_.size(); ++i)
        if (shapes_[i].id() == id) return i;
    return std::nullopt;
}

const TBBShape* TShapesList::find(uint32_t id) const {
    const std::optional<size_t> index = indexOf(id);
    return index ? &shapes_[*index] : nullptr;
}

TBBShape* TShapesList::find(uint32_t id) {
    const std::optional<size_t> index = indexOf(id);
    return index ? &shapes_[*index] : nullptr;
}

bool TShapesList::moveTo(uint32_t id, size_t index) {
    const std::optional<size_t> from = indexOf(id);
    if (!from || index >= size() || *from == index) return false;
    const auto at = [this](size_t i) { return shapes_.begin() + static_cast<std::ptrdiff_t>(i); };
    if (*from < index)
        std::rotate(at(*from), at(*from + 1), at(index + 1));
    else
        std::rotate(at(index), at(*from), at(*from + 1));
    return true;
}

const TBBShape* TShapesList::topAt(Point point, const HitReach& reach) const {
    for (size_t i = shapes_.size(); i-- > 0;)
        if (shapes_[i].partAt(point, reach)) return &shapes_[i];
    return nullptr;
}

TBBShape* TShapesList::topAt(Point point, const HitReach& reach) {
    const TBBShape* top = std::as_const(*this).topAt(point, reach);
    return top == nullptr ? nullptr : find(top->id());
}

Rect TShapesList::bounds() const {
    Rect all;
    for (const TBBShape& shape : shapes_) all = all.united(shape.bounds());
    return all;
}

void TShapesList::moveBy(int32_t dx, int32_t dy) {
    for (TBBShape& shape : shapes_) shape.moveBy(dx, dy);
}

int32_t TShapesList::nextNumber() const {
    int32_t highest = 0;
    for (const TBBShape& shape : shapes_) highest = std::max(highest, shape.number.number);
    return clampStepNumber(highest + 1);
}

TShapesDeque TShapesList::byNumber() {
    TShapesDeque order;
    for (TBBShape& shape : shapes_) order.push_back(&shape);
    std::stable_sort(order.begin(), order.end(),
                     [](const TBBShape* a, const TBBShape* b) { return a->number.number < b->number.number; });
    return order;
}

void TShapesList::renumber(int32_t first) {
    int32_t number = first;
    for (TBBShape* shape : byNumber()) shape->number.number = clampStepNumber(number++);
}

}  // namespace glimmer
