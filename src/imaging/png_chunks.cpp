#include "imaging/png_chunks.h"

#include <algorithm>

#include "imaging/png_codec.h"

namespace glimmer {

namespace {

constexpr uint32_t maxChunkLength = 0x7FFFFFFF;

bool isLetter(uint8_t c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

}  // namespace

uint32_t bigEndian32(const uint8_t* bytes) {
    return static_cast<uint32_t>(bytes[0]) << 24U | static_cast<uint32_t>(bytes[1]) << 16U |
           static_cast<uint32_t>(bytes[2]) << 8U | static_cast<uint32_t>(bytes[3]);
}

std::optional<PngChunkPlace> parseChunkHeader(std::span<const uint8_t, 8> header, size_t offset) {
    const uint32_t length = bigEndian32(header.data());
    const std::span<const uint8_t, 4> type = header.subspan<4>();
    if (length > maxChunkLength || !std::all_of(type.begin(), type.end(), isLetter)) return std::nullopt;
    PngChunkPlace place{{}, offset, length};
    std::copy(type.begin(), type.end(), place.type.begin());
    return place;
}

Result<size_t> measurePng(const uint8_t* data, const ReadableProbe& readable) {
    const Failure noPng{"The data is not a PNG picture."};
    if (data == nullptr || !readable(data, pngSignature.size()) ||
        !std::equal(pngSignature.begin(), pngSignature.end(), data))
        return noPng;
    size_t at = pngSignature.size();
    for (size_t count = 0; count < PngLimits::chunks; ++count) {
        if (!readable(data + at, 8)) return Failure{"The PNG picture is cut short."};
        const std::optional<PngChunkPlace> chunk = parseChunkHeader(std::span<const uint8_t, 8>(data + at, 8), at);
        if (!chunk || (count == 0) != (chunk->name() == "IHDR")) return noPng;
        if (chunk->length > PngLimits::fileBytes || chunk->end() > PngLimits::fileBytes)
            return Failure{"The PNG picture is too large."};
        if (!readable(data + at, chunk->length + 12)) return Failure{"The PNG picture is cut short."};
        at = chunk->end();
        if (chunk->name() == "IEND") return at;
    }
    return Failure{"The PNG picture has too many parts."};
}

}  // namespace glimmer
