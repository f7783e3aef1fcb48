#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace glimmer {

/// Replaces the clipboard's content by a block in a registered format. False when another program holds it.
bool setClipboardBlock(const char* format, std::span<const uint8_t> data);
/// The block in that format; nothing when there is none or it is longer than `limit`. May be some bytes longer than
/// what was put there.
std::optional<std::vector<uint8_t>> clipboardBlock(const char* format, size_t limit);
bool clipboardHasBlock(const char* format);

}  // namespace glimmer
