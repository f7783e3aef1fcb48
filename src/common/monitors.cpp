#include "common/monitors.h"

#include <windows.h>

#include "common/boundary.h"

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

}  // namespace glimmer
