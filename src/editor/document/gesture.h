#pragma once

#include "editor/document/undo.h"

namespace glimmer {

/// One interaction of the user (a drag, a pull of a slider, a stretch of typing): all changes that are made with it are
/// one step of the history. CaptureDocument::beginGesture() begins one; with one that was never begun each change is a
/// step of its own. A copy goes on with the same step.
class Gesture {
public:
    Gesture() = default;
    explicit Gesture(GestureNumber number) : number_(number) {}

    [[nodiscard]] bool underWay() const { return number_ != 0; }
    [[nodiscard]] GestureNumber number() const { return number_; }
    /// Whether a change was made with it.
    [[nodiscard]] bool used() const { return used_; }
    void use() { used_ = true; }
    void end() { *this = Gesture(); }

private:
    GestureNumber number_ = 0;
    bool used_ = false;
};

}  // namespace glimmer
