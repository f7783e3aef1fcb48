#include "capture/window_grab.h"

#include <windows.h>

#include <array>
#include <string_view>

#include "capture/compositor.h"
#include "capture/drawing_surface.h"
#include "capture/screen_area.h"
#include "common/boundary.h"
#include "common/monitors.h"

namespace glimmer {

namespace {

Rect fromSystem(const RECT& area) { return {area.left, area.top, area.right, area.bottom}; }

Rect rectangleOf(HWND window) {
    RECT area{};
    return GetWindowRect(window, &area) != FALSE ? fromSystem(area) : Rect{};
}

std::wstring_view classOf(HWND window, std::array<wchar_t, 64>& name) {
    return {name.data(), static_cast<size_t>(GetClassNameW(window, name.data(), static_cast<int>(name.size())))};
}

/// What is to be in a picture: a part of the screen, and the window that is seen there.
struct Motif {
    HWND window;
    HWND top;  ///< the top-level window that it belongs to, or itself
    Rect area;
};

bool isDesktop(HWND window) {
    std::array<wchar_t, 64> name{};
    return window == GetShellWindow() || classOf(window, name) == L"WorkerW";
}

/// Whether a window higher up hides what lies below it in pictures of the screen.
bool hides(HWND window) {
    if (IsWindowVisible(window) == FALSE || IsIconic(window) != FALSE) return false;
    const LONG style = GetWindowLongW(window, GWL_EXSTYLE);
    // What lets the mouse through shows what is below it: displays over games, marks of other programs.
    if ((style & WS_EX_LAYERED) != 0 && (style & WS_EX_TRANSPARENT) != 0) return false;
    BYTE alpha = 255;
    DWORD used = 0;
    if ((style & WS_EX_LAYERED) != 0 && GetLayeredWindowAttributes(window, nullptr, &alpha, &used) != FALSE &&
        (used & LWA_ALPHA) != 0 && alpha == 0)
        return false;
    return !compositor().cloaked(window) && !compositor().leftOut(window);
}

/// Menus, lists and dialogs of a window are a part of what the user wants to show.
bool belongsTo(HWND window, HWND top) {
    for (HWND owner = window; owner != nullptr; owner = GetWindow(owner, GW_OWNER))
        if (owner == top) return true;
    std::array<wchar_t, 64> name{};
    return classOf(window, name) == L"#32768" &&
           GetWindowThreadProcessId(window, nullptr) == GetWindowThreadProcessId(top, nullptr);
}

struct CoverSearch {
    const Motif& motif;
    bool covered = false;
};

/// From the top down.
BOOL CALLBACK lookForCover(HWND window, LPARAM search) {
    return guarded(FALSE, [=] {
        auto& found = *reinterpret_cast<CoverSearch*>(search);
        if (window == found.motif.top) return FALSE;
        found.covered = hides(window) && !belongsTo(window, found.motif.top) &&
                        !visibleFrame(window).intersected(found.motif.area).empty();
        return found.covered ? FALSE : TRUE;
    });
}

/// Whether the screen shows all of it.
bool inFullView(const Motif& motif) {
    int64_t outside = int64_t{motif.area.width()} * motif.area.height();
    for (const Monitor& monitor : monitors()) {
        const Rect part = monitor.bounds.intersected(motif.area);
        if (!part.empty()) outside -= int64_t{part.width()} * part.height();
    }
    if (outside > 0) return false;
    if (isDesktop(motif.top)) return true;  // it is meant with what stands on it
    CoverSearch search{motif};
    EnumWindows(lookForCover, reinterpret_cast<LPARAM>(&search));
    return !search.covered;
}

/// A program that hangs would keep this one waiting for ever.
bool answers(HWND window) {
    constexpr UINT patience = 500;  // milliseconds
    DWORD_PTR answer = 0;
    return SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, patience, &answer) != 0;
}

const Failure notCopied{"The window could not be copied."};

/// Drawn by the window's program and the system, wherever it is and whatever stands in front of it.
Result<TBitmap> printed(const Motif& motif) {
    const Rect whole = rectangleOf(motif.top);
    Result<DrawingSurface> surface = DrawingSurface::create(whole.width(), whole.height());
    if (!surface) return surface.failure();
    if (!answers(motif.top) || !compositor().print(motif.top, surface->deviceContext())) return notCopied;
    return surface.take().takeBitmap().cropped(motif.area.moved(-whole.left, -whole.top));
}

/// What the window's own device context has.
Result<TBitmap> copied(const Motif& motif) {
    Result<DrawingSurface> surface = DrawingSurface::create(motif.area.width(), motif.area.height());
    if (!surface) return surface.failure();
    const Rect whole = rectangleOf(motif.window);
    const HDC context = GetWindowDC(motif.window);
    const BOOL done = BitBlt(static_cast<HDC>(surface->deviceContext()), 0, 0, motif.area.width(), motif.area.height(),
                             context, motif.area.left - whole.left, motif.area.top - whole.top, SRCCOPY);
    ReleaseDC(motif.window, context);
    if (done == FALSE) return notCopied;
    return surface.take().takeBitmap();
}

bool shows(const Result<TBitmap>& picture, const Motif& motif) {
    return picture && picture->size() == Size{motif.area.width(), motif.area.height()} && !allBlack(*picture);
}

enum class Edges : uint8_t { Cut, Keep };  // of what lies outside of the monitors and cannot be had

Result<TBitmap> grab(const Motif& motif, Edges edges) {
    if (IsIconic(motif.top) != FALSE)
        return Failure{"The window is minimized. Restore it, and take the picture again."};
    if (IsWindowVisible(motif.window) == FALSE) return Failure{"The window is hidden."};
    if (motif.area.empty()) return Failure{"The window has no area."};
    const bool clear = inFullView(motif);
    if (clear) {
        Result<TBitmap> seen = grabScreen(motif.area);
        if (shows(seen, motif)) return seen;
    }
    for (const auto way : std::array{&printed, &copied}) {
        Result<TBitmap> drawn = way(motif);
        if (shows(drawn, motif)) return drawn;
    }
    // It is black indeed, or only what can be seen of it is to be had.
    const Rect seen = motif.area.intersected(wholeScreen());
    if (edges == Edges::Cut && seen.empty()) return Failure{"The window lies outside of the screen."};
    return grabScreen(edges == Edges::Cut ? seen : motif.area);
}

/// The window with its top-level window; `area` of it is to be taken.
Motif motifOf(HWND window, const Rect& area) { return {window, GetAncestor(window, GA_ROOT), area}; }

const Failure gone{"The window is no longer there."};

}  // namespace

Rect visibleFrame(void* window) {
    const auto handle = static_cast<HWND>(window);
    Rect frame = compositor().frame(window).value_or(rectangleOf(handle));
    if (IsZoomed(handle) == FALSE) return frame;
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    if (GetMonitorInfoW(MonitorFromWindow(handle, MONITOR_DEFAULTTONEAREST), &monitor) != FALSE)
        frame = frame.intersected(fromSystem(monitor.rcMonitor));
    return frame;
}

Rect clientFrame(void* window) {
    const auto handle = static_cast<HWND>(window);
    RECT area{};
    if (GetClientRect(handle, &area) == FALSE) return {};
    MapWindowPoints(handle, nullptr, reinterpret_cast<POINT*>(&area), 2);
    return fromSystem(area);
}

Result<TBitmap> grabWindow(void* window) {
    const auto handle = static_cast<HWND>(window);
    if (IsWindow(handle) == FALSE) return gone;
    return grab(motifOf(handle, visibleFrame(window)), Edges::Cut);
}

Result<TBitmap> grabClientArea(void* window) {
    const auto handle = static_cast<HWND>(window);
    if (IsWindow(handle) == FALSE) return gone;
    return grab(motifOf(handle, clientFrame(window)), Edges::Cut);
}

Result<TBitmap> grabWholeWindow(void* window) {
    const auto handle = static_cast<HWND>(window);
    if (IsWindow(handle) == FALSE) return gone;
    return grab(motifOf(handle, rectangleOf(handle)), Edges::Keep);
}

}  // namespace glimmer
