#pragma once

#include <csetjmp>

namespace glimmer {

/// Calls `body(object)`, which works with a C library that reports errors by longjmp to `jump`; false when it did.
/// The jump skips destructors, so `body` and what it calls up to the library hold only plain values; everything else
/// belongs to the object. In a file of its own, so that no variable lives in a register across the jump.
bool runGuarded(std::jmp_buf& jump, void (*body)(void*), void* object);

}  // namespace glimmer
