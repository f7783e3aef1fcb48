#include "capture/overlay/area_selection.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace glimmer {

namespace {

/// A press that goes no farther is a click.
constexpr int32_t clickDistance = 4;
/// As far from an edge as it can be gripped.
constexpr int32_t gripDistance = 5;
constexpr int32_t bigStep = 10;
/// Digits of a side that is typed; no screen is larger.
constexpr size_t mostDigits = 5;

/// A number of digits only.
std::optional<int32_t> number(std::string_view text) {
    int32_t value = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size() || value <= 0) return std::nullopt;
    return value;
}

Point step(SelectionKey key, int32_t by) {
    switch (key) {
        case SelectionKey::Left:
            return {-by, 0};
        case SelectionKey::Right:
            return {by, 0};
        case SelectionKey::Up:
            return {0, -by};
        case SelectionKey::Down:
            return {0, by};
        default:
            return {};
    }
}

}  // namespace

AreaSelection::AreaSelection(const Rect& screen, Point pointer, bool adjusts)
    : screen_(screen), pointer_(pointer), adjusts_(adjusts) {}

/// The area pushed back into the screen, and cut where it is larger.
Rect AreaSelection::kept(const Rect& area) const {
    const int32_t dx = std::max(screen_.left - area.left, 0) - std::max(area.right - screen_.right, 0);
    const int32_t dy = std::max(screen_.top - area.top, 0) - std::max(area.bottom - screen_.bottom, 0);
    return area.moved(dx, dy).intersected(screen_);
}

std::optional<Size> AreaSelection::typedSize() const {
    const size_t sign = typed_.find('x');
    if (sign == std::string::npos) return std::nullopt;
    const std::optional<int32_t> width = number(std::string_view(typed_).substr(0, sign));
    const std::optional<int32_t> height = number(std::string_view(typed_).substr(sign + 1));
    if (!width || !height) return std::nullopt;
    return Size{*width, *height};
}

std::optional<size_t> AreaSelection::framed() const {
    if (frames_.empty() || typedSize() || state_ == State::Chosen) return std::nullopt;
    if (state_ == State::Dragging && moved_) return std::nullopt;
    if (state_ == State::Taken && !own_.empty()) return std::nullopt;
    return std::min(level_, frames_.size() - 1);
}

Rect AreaSelection::area() const {
    if (const std::optional<size_t> frame = framed()) return frames_[*frame].intersected(screen_);
    return own_;
}

void AreaSelection::move(Point pointer, const FramesUnderPointer& frames, SelectionModifiers held) {
    pointer_ = {std::clamp(pointer.x, screen_.left, screen_.right - 1),
                std::clamp(pointer.y, screen_.top, screen_.bottom - 1)};
    if (state_ == State::Hovering) {
        // Over another thing the choice begins at its inside again.
        const bool same = !frames.empty() && !frames_.empty() && frames.front() == frames_.front();
        frames_ = frames;
        if (!same) level_ = 0;
        applyTyped();
    } else if (state_ == State::Dragging) {
        dragTo(pointer_, held);
    } else if (state_ == State::Chosen && held_) {
        adjustTo(pointer_);
    }
    grip_ = pointer_;
}

/// The corner opposite to the anchor lies at the pointer's pixel, which is in the area.
Rect AreaSelection::dragged(Point end, bool square) const {
    Point to = end;
    if (square) {
        // Towards the larger side, as far as the screen goes on both.
        const int32_t roomX = to.x < anchor_.x ? anchor_.x - screen_.left : screen_.right - 1 - anchor_.x;
        const int32_t roomY = to.y < anchor_.y ? anchor_.y - screen_.top : screen_.bottom - 1 - anchor_.y;
        const int32_t side =
            std::min(std::max(std::abs(to.x - anchor_.x), std::abs(to.y - anchor_.y)), std::min(roomX, roomY));
        to = {anchor_.x + (to.x < anchor_.x ? -side : side), anchor_.y + (to.y < anchor_.y ? -side : side)};
    }
    return {std::min(anchor_.x, to.x), std::min(anchor_.y, to.y), std::max(anchor_.x, to.x) + 1,
            std::max(anchor_.y, to.y) + 1};
}

void AreaSelection::dragTo(Point to, SelectionModifiers held) {
    if (std::max(std::abs(to.x - anchor_.x), std::abs(to.y - anchor_.y)) >= clickDistance) moved_ = true;
    if (held.space && moved_) {
        const Rect before = own_;
        own_ = kept(own_.moved(to.x - grip_.x, to.y - grip_.y));
        anchor_ = {anchor_.x + own_.left - before.left, anchor_.y + own_.top - before.top};
        return;
    }
    if (moved_) own_ = dragged(to, held.shift);
}

uint8_t AreaSelection::edgesAt(Point at) const {
    uint8_t edges = none;
    if (std::abs(at.x - own_.left) <= gripDistance) edges |= left;
    if (std::abs(at.x - own_.right) <= gripDistance && (edges & left) == 0) edges |= right;
    if (std::abs(at.y - own_.top) <= gripDistance) edges |= top;
    if (std::abs(at.y - own_.bottom) <= gripDistance && (edges & top) == 0) edges |= bottom;
    return edges;
}

void AreaSelection::adjustTo(Point to) {
    const int32_t dx = to.x - grip_.x;
    const int32_t dy = to.y - grip_.y;
    if (*held_ == none) {
        own_ = kept(own_.moved(dx, dy));
        return;
    }
    Rect changed = own_;
    if ((*held_ & left) != 0) changed.left = std::min(changed.left + dx, changed.right - 1);
    if ((*held_ & right) != 0) changed.right = std::max(changed.right + dx, changed.left + 1);
    if ((*held_ & top) != 0) changed.top = std::min(changed.top + dy, changed.bottom - 1);
    if ((*held_ & bottom) != 0) changed.bottom = std::max(changed.bottom + dy, changed.top + 1);
    own_ = changed.intersected(screen_);
}

void AreaSelection::press() {
    grip_ = pointer_;
    if (state_ == State::Chosen) {
        const uint8_t edges = own_.inflated(gripDistance).contains(pointer_) ? edgesAt(pointer_) : uint8_t{none};
        if (edges != none || own_.contains(pointer_)) {
            held_ = edges;
            return;
        }
        state_ = State::Hovering;  // beside it a new one begins
        typed_.clear();
    }
    if (state_ != State::Hovering) return;
    if (typedSize()) {
        state_ = State::Taken;
        return;
    }
    typed_.clear();
    state_ = State::Dragging;
    anchor_ = pointer_;
    moved_ = false;
    own_ = {};
}

void AreaSelection::release(SelectionModifiers held) {
    if (state_ == State::Chosen) held_.reset();
    if (state_ != State::Dragging) return;
    if (!moved_) {
        own_ = {};
        state_ = frames_.empty() ? State::Hovering : State::Taken;
        return;
    }
    frames_.clear();
    state_ = adjusts_ != held.ctrl ? State::Chosen : State::Taken;
}

void AreaSelection::doubleClick() {
    if (state_ == State::Chosen && own_.contains(pointer_)) state_ = State::Taken;
}

void AreaSelection::wheel(int32_t steps) {
    if (state_ != State::Hovering || frames_.empty()) return;
    const auto last = static_cast<int32_t>(frames_.size()) - 1;
    level_ =
        static_cast<size_t>(std::clamp(static_cast<int32_t>(std::min(level_, frames_.size() - 1)) + steps, 0, last));
}

std::optional<Point> AreaSelection::key(SelectionKey key, SelectionModifiers held) {
    if (key == SelectionKey::Escape) {
        state_ = State::Left;
        return std::nullopt;
    }
    if (key == SelectionKey::Enter) {
        if (state_ != State::Left && !area().empty()) state_ = State::Taken;
        return std::nullopt;
    }
    if (key == SelectionKey::Backspace) {
        if (!typed_.empty()) typed_.pop_back();
        applyTyped();
        return std::nullopt;
    }
    const Point by = step(key, held.shift ? bigStep : 1);
    if (state_ == State::Chosen) {
        if (held.ctrl) {
            own_.right = std::clamp(own_.right + by.x, own_.left + 1, screen_.right);
            own_.bottom = std::clamp(own_.bottom + by.y, own_.top + 1, screen_.bottom);
        } else {
            own_ = kept(own_.moved(by.x, by.y));
        }
        return std::nullopt;
    }
    return Point{std::clamp(pointer_.x + by.x, screen_.left, screen_.right - 1),
                 std::clamp(pointer_.y + by.y, screen_.top, screen_.bottom - 1)};
}

void AreaSelection::type(char character) {
    const char c = character == 'X' || character == '*' ? 'x' : character;
    if (state_ != State::Hovering && state_ != State::Chosen) return;
    const size_t sign = typed_.find('x');
    const size_t digits = sign == std::string::npos ? typed_.size() : typed_.size() - sign - 1;
    const bool digit = c >= '0' && c <= '9' && digits < mostDigits;
    if (digit || (c == 'x' && sign == std::string::npos && !typed_.empty())) typed_ += c;
    applyTyped();
}

/// A chosen area keeps its corner; else the area goes with the pointer.
void AreaSelection::applyTyped() {
    const std::optional<Size> size = typedSize();
    if (!size) {
        if (state_ == State::Hovering) own_ = {};
        return;
    }
    const Point corner = state_ == State::Chosen ? Point{own_.left, own_.top}
                                                 : Point{pointer_.x - size->width / 2, pointer_.y - size->height / 2};
    own_ = kept({corner.x, corner.y, corner.x + size->width, corner.y + size->height});
}

}  // namespace glimmer
