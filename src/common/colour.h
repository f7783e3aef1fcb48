#pragma once

#include <cstdint>

namespace glimmer {

/// A colour as 0x00BBGGRR: red in the low byte.
using Colour = uint32_t;

constexpr Colour rgb(uint32_t red, uint32_t green, uint32_t blue) {
    return (red & 0xFFU) | (green & 0xFFU) << 8U | (blue & 0xFFU) << 16U;
}
constexpr uint8_t redOf(Colour c) { return static_cast<uint8_t>(c & 0xFFU); }
constexpr uint8_t greenOf(Colour c) { return static_cast<uint8_t>(c >> 8U & 0xFFU); }
constexpr uint8_t blueOf(Colour c) { return static_cast<uint8_t>(c >> 16U & 0xFFU); }

}  // namespace glimmer
