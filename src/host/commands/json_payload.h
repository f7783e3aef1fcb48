#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glimmer {

/// A page capture as a host describes it in a JSON object. All members are optional.
struct CapturePayload {
    std::string url;
    std::string title;
    int32_t action = 0;  ///< capture code, with or without 100
    int32_t width = 0;
    int32_t height = 0;
    std::vector<uint8_t> image;  ///< PNG file; empty when the object has no "image" member
};

/// Reads such an object: "url", "title", "action", "width", "height" and "image" (base64). Nothing when the text is
/// not acceptable JSON or the image is not base64.
std::optional<CapturePayload> readCapturePayload(std::string_view json);

/// Unpacks a zlib stream. Nothing when it is damaged, cut off, or longer than `limit` bytes unpacked.
std::optional<std::string> unpackZlib(std::span<const uint8_t> packed, size_t limit);

}  // namespace glimmer
