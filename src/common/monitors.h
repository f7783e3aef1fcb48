#pragma once

#include <vector>

#include "common/geometry.h"

namespace glimmer {

/// A monitor's place on the whole screen, and the part of it that no task bar takes, in pixels.
struct Monitor {
    Rect bounds;
    Rect work;
    bool primary = false;
};

/// All monitors in the order of the system.
std::vector<Monitor> monitors();

}  // namespace glimmer
