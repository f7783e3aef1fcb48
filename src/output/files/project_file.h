#pragma once

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "editor/document/document.h"
#include "editor/painting/text_painter.h"
#include "output/files/file_limits.h"
#include "output/files/project_reader.h"

namespace glimmer {

// A project file is a ZIP archive: "Version" (the number 1), "Editor Names.dat" (one name a line, UTF-8, escaped),
// "Editor Pages.dat" (time, address and title, a line each capture), and the captures as editable PNG files
// "0001.png", "0002.png" and so on in list order.

/// Bytes of an editable PNG file of a capture.
using CaptureEncoder = std::function<Result<std::vector<uint8_t>>(const CaptureDocument&, size_t index)>;
/// Writes the captures, in that order; the file appears only when it is complete. What readProject() would refuse
/// within the same limits is refused with a sentence, and a file of that name stays as it was.
Status writeProject(const std::filesystem::path& path, std::span<const CaptureDocument* const> captures,
                    const CaptureEncoder& encode, const ProjectLimits& limits = {});

/// All captures of a project, or none and the reason. Holds one unpacked entry at a time.
Result<std::vector<std::unique_ptr<CaptureDocument>>> readProject(const std::filesystem::path& path,
                                                                  const CaptureDecoder& decode,
                                                                  const ProjectLimits& limits = {});

}  // namespace glimmer
