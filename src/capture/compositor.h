#pragma once

#include <optional>

#include "common/geometry.h"

namespace glimmer {

/// What the system's compositor knows of top-level windows (HWND) and does for them. Each version of the system has
/// more of it than the one before, so everything may fail. One class for people, others for tests.
class Compositor {
public:
    virtual ~Compositor() = default;
    /// What is seen of a window: its rectangle without the invisible border for the mouse. Pixels of the screen;
    /// nothing where the system does not say.
    virtual std::optional<Rect> frame(void* window) = 0;
    /// Whether a window that counts as visible is on no monitor: on another virtual desktop, or asleep.
    virtual bool cloaked(void* window) = 0;

    /// Leaves a window of this process out of every picture of the screen, or takes it in again; on the monitor it
    /// stays. False, and nothing has happened, where the system cannot do that.
    virtual bool leaveOut(void* window, bool out) = 0;
    /// Whether pictures of the screen go without that window, of any process.
    virtual bool leftOut(void* window) = 0;

    /// Whether a window of this process appears and goes with an animation.
    virtual void setTransitions(void* window, bool animated) = 0;
    /// Returns when what was asked for before is on the screen.
    virtual void awaitScreen() = 0;

    /// Has a window drawn into a device context (HDC) whole, covered parts and what the graphics card drew included,
    /// from the corner of its rectangle. Whether the system says that it was.
    virtual bool print(void* window, void* context) = 0;
};

/// The one in use; the system's own unless it was replaced.
Compositor& compositor();
/// Null means the system's again. The object must live until it is replaced.
void setCompositor(Compositor* replacement);

}  // namespace glimmer
