#pragma once

#include <optional>
#include <string>
#include <vector>

#include "common/geometry.h"

// What the user does on the frozen screen until an area of it is chosen, without a window: mouse and keys in, the area
// to be shown or taken out. All coordinates are pixels of the whole screen; they may be negative.

namespace glimmer {

/// Keys that mean something during the selection.
enum class SelectionKey : uint8_t { Left, Right, Up, Down, Enter, Escape, Backspace };

/// Held keys.
struct SelectionModifiers {
    bool shift = false;
    bool ctrl = false;
    bool space = false;
};

/// What the pointer is over: a control, the windows around it, its monitor. From the inside out; the area of each.
using FramesUnderPointer = std::vector<Rect>;

class AreaSelection {
public:
    enum class State : uint8_t {
        Hovering,  ///< what is under the pointer is framed, or an area of a typed size goes with it
        Dragging,  ///< the button is down
        Chosen,    ///< an area stands and can be moved and changed before it is taken
        Taken,     ///< area() is what the user wants
        Left,      ///< nothing is wanted
    };

    /// `screen`: all monitors together; no area goes beyond. `adjusts`: an area that was dragged is not taken at once
    /// but stands until Enter or a double click.
    AreaSelection(const Rect& screen, Point pointer, bool adjusts);

    [[nodiscard]] State state() const { return state_; }
    [[nodiscard]] Point pointer() const { return pointer_; }
    /// What is framed now; may be empty.
    [[nodiscard]] Rect area() const;
    /// Which of the frames under the pointer it is; nothing when the area is the user's own.
    [[nodiscard]] std::optional<size_t> framed() const;
    /// The size that is being typed, as it is typed.
    [[nodiscard]] const std::string& typed() const { return typed_; }

    /// The pointer is there, over those frames (they count while hovering only).
    void move(Point pointer, const FramesUnderPointer& frames, SelectionModifiers held);
    /// The left button.
    void press();
    void release(SelectionModifiers held);
    void doubleClick();
    /// Towards the window around (1) or the part inside (-1).
    void wheel(int32_t steps);

    /// Answers where the pointer is to be set: arrows move it by a pixel, ten with Shift, and what hangs on it.
    std::optional<Point> key(SelectionKey key, SelectionModifiers held);
    /// A character of a size: digits, and x between them. Others are ignored.
    void type(char character);

    void leave() { state_ = State::Left; }

private:
    enum Edge : uint8_t { none = 0, left = 1, top = 2, right = 4, bottom = 8 };

    [[nodiscard]] Rect kept(const Rect& area) const;
    [[nodiscard]] std::optional<Size> typedSize() const;
    [[nodiscard]] Rect dragged(Point end, bool square) const;
    [[nodiscard]] uint8_t edgesAt(Point at) const;
    void dragTo(Point to, SelectionModifiers held);
    void adjustTo(Point to);
    void applyTyped();

    Rect screen_;
    Point pointer_;
    bool adjusts_;
    State state_ = State::Hovering;
    FramesUnderPointer frames_;
    size_t level_ = 0;             ///< of frames_, from the inside
    Point anchor_;                 ///< where a drag began
    Point grip_;                   ///< where the pointer was before, for what moves with it
    bool moved_ = false;           ///< the drag is one, no click
    std::optional<uint8_t> held_;  ///< edges of a chosen area that are dragged; none of them: all of it
    Rect own_;                     ///< dragged or typed
    std::string typed_;
};

}  // namespace glimmer
