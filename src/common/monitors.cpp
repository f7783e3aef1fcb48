#include "common/monitors.h"

#include <windows.h>

#include <optional>

#include "common/boundary.h"
#include "common/system_library.h"

namespace glimmer {

namespace {

Rect fromSystem(const RECT& area) { return {area.left, area.top, area.right, area.bottom}; }

/// The monitor's own, from Windows 8.1 on.
std::optional<UINT> ownDotsPerInch(HMONITOR monitor) {
    static const auto ofMonitor =
        systemFunction<HRESULT(WINAPI*)(HMONITOR, int, UINT*, UINT*)>(L"shcore.dll", "GetDpiForMonitor");
    constexpr int effectiveDpi = 0;  // MDT_EFFECTIVE_DPI: the scale that windows have
    UINT across = 0;
    UINT down = 0;
    if (ofMonitor == nullptr || FAILED(ofMonitor(monitor, effectiveDpi, &across, &down)) || across == 0)
        return std::nullopt;
    return across;
}

/// As this process sees it: one that does not know scales is told the same for all.
int dotsPerInch(HMONITOR monitor) {
    if (const auto own = ownDotsPerInch(monitor)) return static_cast<int>(*own);
    const HDC screen = GetDC(nullptr);
    const int ofScreen = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return ofScreen > 0 ? ofScreen : 96;
}

BOOL CALLBACK remember(HMONITOR monitor, HDC /*dc*/, LPRECT /*area*/, LPARAM list) {
    return guarded(FALSE, [=] {
        MONITORINFO info{};
        info.cbSize = sizeof info;
        if (GetMonitorInfoW(monitor, &info) == FALSE) return TRUE;
        const bool primary = (info.dwFlags & MONITORINFOF_PRIMARY) != 0;
        reinterpret_cast<std::vector<Monitor>*>(list)->push_back(
            {fromSystem(info.rcMonitor), fromSystem(info.rcWork), primary, dotsPerInch(monitor)});
        return TRUE;
    });
}

}  // namespace

std::vector<Monitor> monitors() {
    std::vector<Monitor> all;
    EnumDisplayMonitors(nullptr, nullptr, remember, reinterpret_cast<LPARAM>(&all));
    return all;
}

int32_t systemMetricAt(Point place, int index) {
    // Of Windows 10; before it all monitors count as having the same scaling.
    static const auto metricForDpi = systemFunction<int(WINAPI*)(int, UINT)>(L"user32.dll", "GetSystemMetricsForDpi");
    const auto dpi = ownDotsPerInch(MonitorFromPoint({place.x, place.y}, MONITOR_DEFAULTTONEAREST));
    return dpi && metricForDpi != nullptr ? metricForDpi(index, *dpi) : GetSystemMetrics(index);
}

}  // namespace glimmer
