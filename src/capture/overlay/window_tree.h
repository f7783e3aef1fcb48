#pragma once

#include <string>
#include <vector>

#include "common/geometry.h"

namespace glimmer {

/// Something that can be framed as a whole: a window's visible frame, its client area, a control, a monitor.
struct WindowPart {
    Rect frame;              ///< pixels of the whole screen
    void* window = nullptr;  ///< HWND; null for monitors and the desktop
    bool client = false;     ///< the inside of a top-level window
};

/// The windows that stood on the screen at one moment, so that they can be found although something covers them now.
class WindowTree {
public:
    /// As they stand now.
    WindowTree();

    /// What lies at a place: the innermost control first, then what it stands in, the window, the monitor and the whole
    /// desktop. Parts with the same frame are named once.
    [[nodiscard]] std::vector<WindowPart> at(Point place);
    /// Whether a window of another program that forbids pictures of itself lies in that area.
    [[nodiscard]] bool forbidden(const Rect& area) const;

private:
    struct Node {
        void* window = nullptr;
        Rect frame;
        bool read = false;           ///< the children are
        std::vector<Node> children;  ///< from the top down
    };
    static void readChildren(Node& node);
    static void collect(Node& node, Point place, std::vector<WindowPart>& parts);

    std::vector<Node> windows_;  // from the top down
    std::vector<Rect> monitors_;
    Rect desktop_;
};

/// The title of the window that a part belongs to, UTF-8; empty when it has none.
std::string windowTitle(void* window);

}  // namespace glimmer
