#pragma once

#include <cstddef>
#include <cstdint>

namespace glimmer {

/// Copies `count` pixels of 3 bytes to pixels of 4, the fourth byte 255. The two must not overlap.
void widenRow(uint8_t* to, const uint8_t* from, size_t count);
/// Copies `count` pixels of 4 bytes to pixels of 3. The two must not overlap.
void narrowRow(uint8_t* to, const uint8_t* from, size_t count);

/// Exchanges the first and the third byte of `count` pixels of 4 bytes; `to` may be `from`.
void swapRedAndBlue(uint8_t* to, const uint8_t* from, size_t count);

/// The ways of narrowRow: the one that every processor has, and one for SSSE3.
using NarrowFunction = void (*)(uint8_t* to, const uint8_t* from, size_t count);
void narrowRowSse2(uint8_t* to, const uint8_t* from, size_t count);
void narrowRowSsse3(uint8_t* to, const uint8_t* from, size_t count);

}  // namespace glimmer
