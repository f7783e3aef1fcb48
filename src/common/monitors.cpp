#include "common/monitors.h"

#include <windows.h>

#include "common/boundary.h"
#include "common/system_library.h"

namespace glimmer {

namespace {

Rect fromSystem(const RECT& area) { return {area.left, area.top, area.right, area.bottom}; }

/// As this process sees it: one that does not know scales is told the same for all.
int dotsPerInch(HMONITOR monitor) {
    // From Windows 8.1 on; the first argument after the monitor is 0 for the scale that windows have.
    static const auto ofMonitor =
        systemFunction<HRESULT(WINAPI*)(HMONITOR, int, UINT*, UINT*)>(L"shcore.dll", "GetDpiForMonitor");
    UINT across = 0;
    UINT down = 0;
    if (ofMonitor != nullptr && SUCCEEDED(ofMonitor(monitor, 0, &across, &down)) && across > 0)
        return static_cast<int>(across);
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
    using MonitorDpi = HRESULT(WINAPI*)(HMONITOR, int, UINT*, UINT*);
    using MetricForDpi = int(WINAPI*)(int, UINT);
    // Of Windows 8.1 and 10; before them all monitors have the same scaling.
    static const auto monitorDpi = systemFunction<MonitorDpi>(L"shcore.dll", "GetDpiForMonitor");
    static const auto metricForDpi = systemFunction<MetricForDpi>(L"user32.dll", "GetSystemMetricsForDpi");
    constexpr int effectiveDpi = 0;  // MDT_EFFECTIVE_DPI
    UINT dpi = 0;
    UINT vertical = 0;
    const HMONITOR monitor = MonitorFromPoint({place.x, place.y}, MONITOR_DEFAULTTONEAREST);
    if (monitorDpi != nullptr && metricForDpi != nullptr &&
        SUCCEEDED(monitorDpi(monitor, effectiveDpi, &dpi, &vertical)))
        return metricForDpi(index, dpi);
    return GetSystemMetrics(index);
}

}  // namespace glimmer
