#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "editor/annotations/uShapes.h"

namespace glimmer {

/// The annotations of one capture in painting order: the last is painted last and lies on top. Owns them by value,
/// so a list can be copied and compared. Pointers into it are valid until it is changed; keep ids instead.
class TShapesList {
public:
    [[nodiscard]] size_t size() const { return shapes_.size(); }
    [[nodiscard]] bool empty() const { return shapes_.empty(); }
    [[nodiscard]] auto begin() { return shapes_.begin(); }
    [[nodiscard]] auto end() { return shapes_.end(); }
    [[nodiscard]] auto begin() const { return shapes_.begin(); }
    [[nodiscard]] auto end() const { return shapes_.end(); }
    [[nodiscard]] TBBShape& operator[](size_t index) { return shapes_[index]; }
    [[nodiscard]] const TBBShape& operator[](size_t index) const { return shapes_[index]; }
    bool operator==(const TShapesList& other) const { return shapes_ == other.shapes_; }

    /// Puts the annotation on top and gives it an id of its own, which is answered.
    uint32_t add(TBBShape shape);
    /// Puts the annotation at that place in the order (the end when beyond). Its id is kept when it is free, as
    /// when a removal is undone; otherwise it gets a new one. Answers the id.
    uint32_t insert(size_t index, TBBShape shape);
    bool remove(uint32_t id);
    void clear() { shapes_.clear(); }

    [[nodiscard]] TBBShape* find(uint32_t id);
    [[nodiscard]] const TBBShape* find(uint32_t id) const;
    [[nodiscard]] std::optional<size_t> indexOf(uint32_t id) const;

    /// Moves the annotation to that place in the painting order; false when it is there already or does not exist.
    bool moveTo(uint32_t id, size_t index);

    /// The topmost annotation with a visible part under the point.
    [[nodiscard]] TBBShape* topAt(Point point, const HitReach& reach = {});
    [[nodiscard]] const TBBShape* topAt(Point point, const HitReach& reach = {}) const;
    /// Around all of them.
    [[nodiscard]] Rect bounds() const;
    void moveBy(int32_t dx, int32_t dy);

    /// The step number for the next annotation: one more than the highest, 1 in an empty list.
    [[nodiscard]] int32_t nextNumber() const;
    /// All annotations by step number, equal ones in painting order.
    [[nodiscard]] TShapesDeque byNumber();
    /// Numbers all annotations first, first + 1, ... in the order they have now by number.
    void renumber(int32_t first = 1);

private:
    [[nodiscard]] uint32_t freeId();

    std::vector<TBBShape> shapes_;
    uint32_t lastId_ = 0;
};

}  // namespace glimmer
