#pragma once

#include <cstddef>
#include <cstdint>

namespace glimmer {

/// Whether every byte of a range of this process's memory may be read: asks the system page by page.
bool isReadable(const uint8_t* data, size_t count);

}  // namespace glimmer
