#pragma once

#include <vector>

#include "common/geometry.h"

namespace glimmer {

/// A monitor's place on the whole screen, and the part of it that no task bar takes, in pixels.
struct Monitor {
    Rect bounds;
    Rect work;
    bool primary = false;
    int dotsPerInch = 96;
};

/// All monitors in the order of the system.
std::vector<Monitor> monitors();

/// A size of the system's (SM_CXCURSOR, ...) as it is on the monitor nearest to a place of the screen, in pixels.
int32_t systemMetricAt(Point place, int index);

}  // namespace glimmer
