#pragma once

#include "glimmerpad.h"

namespace glimmer {

/// Checks the host's version and hands out the record of the five entry points; see glimmerpad.h.
bool fillInterface(GlimmerpadInterface* record, uint32_t size);

}  // namespace glimmer
