#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "capture/compositor.h"

namespace glimmer::test {

/// Stands in for the system's compositor while it lives. It knows what a test tells it, and notes what is asked of it.
class CompositorStandIn : public Compositor {
public:
    CompositorStandIn() { setCompositor(this); }
    ~CompositorStandIn() override { setCompositor(nullptr); }

    std::map<void*, Rect> frames;
    std::set<void*> asleep;
    std::set<void*> absent;  ///< left out of pictures
    bool canLeaveOut = false;
    std::function<bool(void*)> draw;  ///< into a device context
    std::vector<std::string> calls;

    std::optional<Rect> frame(void* window) override {
        return frames.contains(window) ? std::optional(frames[window]) : std::nullopt;
    }
    bool cloaked(void* window) override { return asleep.contains(window); }
    bool leaveOut(void* window, bool out) override {
        if (canLeaveOut && out) absent.insert(window);
        if (!out) absent.erase(window);
        return canLeaveOut;
    }
    bool leftOut(void* window) override { return absent.contains(window); }
    void setTransitions(void*, bool animated) override { calls.emplace_back(animated ? "animate" : "at once"); }
    void awaitScreen() override { calls.emplace_back("await"); }
    bool print(void*, void* context) override {
        calls.emplace_back("print");
        return draw && draw(context);
    }
};

}  // namespace glimmer::test
