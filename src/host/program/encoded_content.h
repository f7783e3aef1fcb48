#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "common/result.h"

namespace glimmer {

class CaptureDocument;
class TSaver;

/// What a host fetches with "getEncodedContent": the last capture for which it asked for that, as a text or a file.
/// The memory stays where it is until the next change of this object.
class EncodedContent {
public:
    enum class Form : uint8_t { Text, Image };

    /// Encodes a capture, which is the one from now on. A failure changes nothing.
    Status encode(TSaver& saver, const CaptureDocument& document, Form form);
    /// Encodes it again if it has changed since, and is one of those that are open.
    Status encodeAgain(TSaver& saver, std::span<CaptureDocument* const> open);

    [[nodiscard]] const std::string& text() const { return text_; }             ///< base64 of a PNG file, or empty
    [[nodiscard]] const std::vector<uint8_t>& image() const { return image_; }  ///< PNG file, or empty

private:
    std::string text_;
    std::vector<uint8_t> image_;
    const CaptureDocument* document_ = nullptr;  ///< may be closed by now
    uint64_t revision_ = 0;                      ///< of what was encoded
};

}  // namespace glimmer
