#pragma once

#include <cstddef>

namespace glimmer {

/// One drawing of src/resources/icons: its file name without ending, and its SVG text.
struct IconData {
    const char* name;
    const char* svg;
};

extern const IconData iconData[];
extern const std::size_t iconCount;

}  // namespace glimmer
