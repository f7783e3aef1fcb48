#include "capture/window_grab.h"

#include <windows.h>

#include <array>
#include <string_view>

#include "capture/drawing_surface.h"

namespace glimmer {

namespace {

/// Copies `area`, in coordinates of `context`, into a picture of that size.
Result<TBitmap> grab(HDC context, const RECT& area) {
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    Result<DrawingSurface> surface = DrawingSurface::create(width, height);
    if (!surface) return surface.failure();
    if (BitBlt(static_cast<HDC>(surface->deviceContext()), 0, 0, width, height, context, area.left, area.top,
               SRCCOPY | CAPTUREBLT) == 0) {
        return Failure{"The window could not be copied."};
    }
    return surface.take().takeBitmap();
}

}  // namespace

Result<TBitmap> grabWindow(void* window) {
    const auto handle = static_cast<HWND>(window);
    RECT area = {};
    if (GetWindowRect(handle, &area) == 0) return Failure{"The window is no longer there."};
    OffsetRect(&area, -area.left, -area.top);
    const HDC context = GetWindowDC(handle);
    Result<TBitmap> picture = grab(context, area);
    ReleaseDC(handle, context);
    return picture;
}

Result<TBitmap> grabClientArea(void* window) {
    const auto handle = static_cast<HWND>(window);
    RECT area = {};
    if (GetClientRect(handle, &area) == 0) return Failure{"The window is no longer there."};
    const HDC context = GetDC(handle);
    Result<TBitmap> picture = grab(context, area);
    ReleaseDC(handle, context);
    return picture;
}

void* findChromeRenderWidget() {
    constexpr const wchar_t* frameClass = L"Chrome_WidgetWin_0";
    // A null parent would mean the desktop.
    const HWND top = GetForegroundWindow();
    if (top == nullptr) return nullptr;
    HWND frame = FindWindowExW(top, nullptr, frameClass, nullptr);
    // Some versions of the browser have no window in between.
    std::array<wchar_t, 64> topClass = {};
    GetClassNameW(top, topClass.data(), static_cast<int>(topClass.size()));
    if (frame == nullptr && std::wstring_view(topClass.data()) == frameClass) frame = top;
    return frame != nullptr ? FindWindowExW(frame, nullptr, L"Chrome_RenderWidgetHostHWND", nullptr) : nullptr;
}

}  // namespace glimmer
