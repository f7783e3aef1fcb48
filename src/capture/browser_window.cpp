#include "capture/browser_window.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "common/boundary.h"

namespace glimmer {

namespace {

constexpr const wchar_t* areaClass = L"Chrome_RenderWidgetHostHWND";

bool isFrame(std::wstring_view name) {
    constexpr std::wstring_view start = L"Chrome_WidgetWin_";
    if (!name.starts_with(start) || name.size() == start.size()) return false;
    return std::ranges::all_of(name.substr(start.size()), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

struct Search {
    bool frameSeen = false;
    HWND area = nullptr;
    int64_t extent = 0;  // pixels
};

void consider(HWND window, Search& search) {
    std::array<wchar_t, 64> buffer{};
    const std::wstring_view name(
        buffer.data(), static_cast<size_t>(GetClassNameW(window, buffer.data(), static_cast<int>(buffer.size()))));
    search.frameSeen = search.frameSeen || isFrame(name);
    RECT place{};
    if (name != areaClass || IsWindowVisible(window) == FALSE || GetWindowRect(window, &place) == FALSE) return;
    const int64_t extent = int64_t{place.right - place.left} * (place.bottom - place.top);
    if (extent <= search.extent) return;
    search.extent = extent;
    search.area = window;
}

BOOL CALLBACK considerChild(HWND window, LPARAM search) {
    return guarded(FALSE, [=] {
        consider(window, *reinterpret_cast<Search*>(search));
        return TRUE;
    });
}

}  // namespace

void* findChromeRenderWidget() {
    // A null parent would mean the desktop.
    const HWND front = GetForegroundWindow();
    if (front == nullptr) return nullptr;
    const HWND frame = FindWindowExW(front, nullptr, L"Chrome_WidgetWin_0", nullptr);
    const HWND area = frame != nullptr ? FindWindowExW(frame, nullptr, areaClass, nullptr) : nullptr;
    if (area != nullptr) return area;
    Search search;
    consider(front, search);
    EnumChildWindows(front, considerChild, reinterpret_cast<LPARAM>(&search));
    return search.frameSeen ? search.area : nullptr;
}

}  // namespace glimmer
