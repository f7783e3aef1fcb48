#pragma once

#include <bitset>
#include <cstdint>
#include <optional>

namespace glimmer {

/// A set of bytes.
using ByteSet = std::bitset<256>;

/// 0-9, a-z, A-Z: what "\w" means, and what lies on one side of a word boundary. An underscore is none of them.
bool isWordByte(uint8_t byte);

/// The set behind a class escape of the pattern language: 'd' for "\d", 'D' for all that are not digits. Nothing for a
/// letter that names no class. Bytes from 0x80 on are in the capital classes only.
std::optional<ByteSet> classNamed(char letter);

}  // namespace glimmer
