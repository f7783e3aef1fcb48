#pragma once

#include <cstddef>
#include <memory>

#include "common/bitmap.h"

namespace glimmer {

/// Pixel memory that can give up its addresses: a section backed by the paging file, mapped while it is in use. A
/// 32-bit process so holds many more pixels than it can address at once. Small pictures stay on the heap. Null when the
/// system has no memory. For setPixelAllocator().
std::unique_ptr<PixelMemory> sectionPixelMemory(size_t count);

}  // namespace glimmer
