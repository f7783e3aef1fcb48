#pragma once

#include <cstdint>
#include <string>

namespace glimmer {

/// A shortcut value: the virtual key code in the low byte and the held keys above it.
inline constexpr int32_t hotKeyShift = 0x2000;
inline constexpr int32_t hotKeyCtrl = 0x4000;
inline constexpr int32_t hotKeyAlt = 0x8000;

constexpr uint8_t hotKeyCode(int32_t hotKey) { return static_cast<uint8_t>(hotKey & 0xFF); }

/// Whether the combination may be taken from every other program: keys that type, move or delete need Ctrl or Alt.
bool mayBeGlobal(int32_t hotKey);

/// For people: "Ctrl+Shift+Print Screen"; "None" without a key.
std::string hotKeyText(int32_t hotKey);

}  // namespace glimmer
