#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace glimmer {

/// The text of a file as UTF-8 without a byte order mark: from UTF-16 when it begins with that mark in either byte
/// order, from UTF-8 when it begins with its mark or when it has well-formed multi-byte sequences, and no more runs of
/// bytes that belong to none (so a file with a damaged byte, or one cut off inside a sequence, stays readable),
/// otherwise from the user's ANSI code page. Zero bytes, which a power failure leaves at a file's end, become line
/// ends. The result is well-formed; what cannot be read is U+FFFD.
std::string textFromFileBytes(std::span<const uint8_t> bytes);

/// Converts text in the user's ANSI code page to UTF-8. Until the program installs the system's own conversion,
/// Windows-1252 is assumed; null goes back to that.
using AnsiDecoder = std::string (*)(std::string_view bytes);
void setAnsiDecoder(AnsiDecoder decoder);

}  // namespace glimmer
