#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace glimmer {

inline constexpr std::array<uint8_t, 8> pngSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

/// Place of one chunk in a PNG file.
struct PngChunkPlace {
    std::array<char, 4> type;
    size_t offset;  ///< of the length field
    size_t length;  ///< of the data
    [[nodiscard]] std::string_view name() const { return {type.data(), type.size()}; }
    [[nodiscard]] size_t dataOffset() const { return offset + 8; }
    [[nodiscard]] size_t end() const { return offset + 12 + length; }
};

/// Reads a chunk's length and type from its first eight bytes, which stand at `offset` of the file. Nothing when
/// they cannot be those of a chunk.
std::optional<PngChunkPlace> parseChunkHeader(std::span<const uint8_t, 8> header, size_t offset);

uint32_t bigEndian32(const uint8_t* bytes);

}  // namespace glimmer
