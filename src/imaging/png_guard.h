#pragma once

#include <png.h>

namespace glimmer {

/// Calls `body(object)`, which works with libpng; false when libpng reported an error and left it by longjmp. The
/// jump skips destructors, so `body` and what it calls up to libpng hold only plain values; everything else belongs
/// to the object. In a file of its own, so that no variable lives in a register across the jump.
bool runGuarded(png_structp png, void (*body)(void*), void* object);

}  // namespace glimmer
