#include "capture/overlay/window_tree.h"

#include <windows.h>

#include <algorithm>
#include <array>

#include "capture/compositor.h"
#include "capture/screen_area.h"
#include "capture/window_grab.h"
#include "common/boundary.h"
#include "common/monitors.h"
#include "common/wide_text.h"

namespace glimmer {

namespace {

Rect fromSystem(const RECT& area) { return {area.left, area.top, area.right, area.bottom}; }

/// A person would not say that such a window is there.
bool counts(HWND window) {
    if (IsWindowVisible(window) == FALSE || IsIconic(window) != FALSE || compositor().cloaked(window)) return false;
    const LONG style = GetWindowLongW(window, GWL_EXSTYLE);
    return (style & WS_EX_LAYERED) == 0 || (style & WS_EX_TRANSPARENT) == 0;
}

BOOL CALLBACK collectWindow(HWND window, LPARAM list) {
    return guarded(FALSE, [=] {
        if (counts(window)) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
        return TRUE;
    });
}

void add(std::vector<WindowPart>& parts, const WindowPart& part) {
    if (part.frame.empty() || (!parts.empty() && parts.back().frame == part.frame)) return;
    parts.push_back(part);
}

}  // namespace

WindowTree::WindowTree() : desktop_(wholeScreen()) {
    for (const Monitor& monitor : monitors()) monitors_.push_back(monitor.bounds);
    std::vector<HWND> found;
    EnumWindows(collectWindow, reinterpret_cast<LPARAM>(&found));
    for (HWND window : found) windows_.push_back({window, visibleFrame(window), false, {}});
}

/// Only of windows that the pointer comes over: all of a busy desktop are thousands.
void WindowTree::readChildren(Node& node) {
    node.read = true;
    constexpr size_t most = 2000;
    for (HWND child = GetWindow(static_cast<HWND>(node.window), GW_CHILD);
         child != nullptr && node.children.size() < most; child = GetWindow(child, GW_HWNDNEXT)) {
        RECT area{};
        if (IsWindowVisible(child) == FALSE || GetWindowRect(child, &area) == FALSE) continue;
        const Rect frame = fromSystem(area).intersected(node.frame);
        if (!frame.empty()) node.children.push_back({child, frame, false, {}});
    }
}

/// From the inside out.
void WindowTree::collect(Node& node, Point place, std::vector<WindowPart>& parts) {
    if (!node.read) readChildren(node);
    // Group boxes lie above or below what stands in them; the smallest of those at the place is meant.
    Node* best = nullptr;
    const auto extent = [](const Rect& area) { return int64_t{area.width()} * area.height(); };
    for (Node& child : node.children)
        if (child.frame.contains(place) && (best == nullptr || extent(child.frame) < extent(best->frame)))
            best = &child;
    if (best != nullptr) collect(*best, place, parts);
    add(parts, {node.frame, node.window, false});
}

std::vector<WindowPart> WindowTree::at(Point place) {
    std::vector<WindowPart> parts;
    for (Node& node : windows_) {
        if (!node.frame.contains(place)) continue;
        if (!node.read) readChildren(node);
        std::vector<WindowPart> inside;
        collect(node, place, inside);
        inside.pop_back();  // the window itself comes below
        const Rect client = clientFrame(node.window).intersected(node.frame);
        for (const WindowPart& part : inside) add(parts, part);
        if (client.contains(place)) add(parts, {client, node.window, true});
        add(parts, {node.frame, node.window, false});
        break;
    }
    for (const Rect& monitor : monitors_)
        if (monitor.contains(place)) add(parts, {monitor});
    add(parts, {desktop_});
    return parts;
}

bool WindowTree::forbidden(const Rect& area) const {
    return std::any_of(windows_.begin(), windows_.end(), [&area](const Node& node) {
        DWORD affinity = WDA_NONE;
        DWORD process = 0;
        GetWindowThreadProcessId(static_cast<HWND>(node.window), &process);
        return process != GetCurrentProcessId() && !node.frame.intersected(area).empty() &&
               GetWindowDisplayAffinity(static_cast<HWND>(node.window), &affinity) != FALSE && affinity != WDA_NONE;
    });
}

std::string windowTitle(void* window) {
    if (window == nullptr) return {};
    constexpr int longest = 512;
    std::array<wchar_t, longest> text{};
    // Of another program the system answers without asking it.
    const int length = GetWindowTextW(GetAncestor(static_cast<HWND>(window), GA_ROOT), text.data(), longest);
    return fromWide(std::wstring_view(text.data(), static_cast<size_t>(std::max(length, 0))));
}

}  // namespace glimmer
