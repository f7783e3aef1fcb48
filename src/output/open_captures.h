#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "editor/document.h"

namespace glimmer {

/// The captures in a file: those of a project (extension ".gmp"), or the picture in any other. A PNG that carries its
/// annotations opens with them; for one that does not `lacksData` is set. Fails with a sentence, and then opens none.
Result<std::vector<std::unique_ptr<CaptureDocument>>> openCaptures(const std::filesystem::path& path,
                                                                   bool* lacksData = nullptr);

}  // namespace glimmer
