#pragma once

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "editor/document.h"
#include "editor/text_painter.h"
#include "imaging/png_codec.h"

namespace glimmer {

// A project file is a ZIP archive: "Version" (the number 1), "Editor Names.dat" (one name a line, UTF-8, escaped),
// "Editor Pages.dat" (time, address and title, a line each capture), and the captures as editable PNG files
// "0001.png", "0002.png" and so on in list order.

struct ProjectLimits {
    static constexpr uint64_t fileBytes = uint64_t{1} << 30U;      ///< the archive
    static constexpr uint64_t unpackedBytes = uint64_t{1} << 30U;  ///< all entries together
    static constexpr size_t captures = 1000;
    static constexpr size_t listBytes = size_t{4} << 20U;  ///< one list of names or pages
};

/// Bytes of an editable PNG file of a capture.
using CaptureEncoder = std::function<Result<std::vector<uint8_t>>(const CaptureDocument&, size_t index)>;
/// A capture from such a file, its name and page not yet set.
using CaptureDecoder =
    std::function<Result<std::unique_ptr<CaptureDocument>>(std::span<const uint8_t> png, CaptureInfo info)>;

/// Writes the captures, in that order; the file appears only when it is complete.
Status writeProject(const std::filesystem::path& path, std::span<const CaptureDocument* const> captures,
                    const CaptureEncoder& encode);

/// All captures of a project, or none and the reason.
Result<std::vector<std::unique_ptr<CaptureDocument>>> readProject(const std::filesystem::path& path,
                                                                  const CaptureDecoder& decode);

}  // namespace glimmer
