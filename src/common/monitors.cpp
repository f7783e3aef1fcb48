#include "common/monitors.h"

#include <windows.h>

#include "common/boundary.h"
#include "common/system_library.h"

namespace glimmer {

namespace {

Rect fromSystem(const RECT& area) { return {area.left, area.top, area.right, area.bottom}; }

BOOL CALLBACK remember(HMONITOR monitor, HDC /*dc*/, LPRECT /*area*/, LPARAM list) {
    return guarded(FALSE, [=] {
        MONITORINFO info{};
        info.cbSize = sizeof info;
        if (GetMonitorInfoW(monitor, &info) == FALSE) return TRUE;
        const bool primary = (info.dwFlags & MONITORINFOF_PRIMARY) != 0;
        reinterpret_cast<std::vector<Monitor>*>(list)->push_back(
            {fromSystem(info.rcMonitor), fromSystem(info.rcWork), primary});
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
