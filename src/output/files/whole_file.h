#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <vector>

#include "common/progress.h"
#include "common/result.h"

namespace glimmer {

/// Writes what `encode` answers into a file of the user's that appears only when it is complete: over one of that name,
/// or, with `otherName`, under the first name that it gives which nobody takes in the meantime. The file; stopped, or
/// the sentence of the file or of `encode`, when it failed.
Result<std::filesystem::path> writeWholeFile(const std::filesystem::path& path,
                                             const std::function<Result<std::vector<uint8_t>>()>& encode,
                                             const Progress& progress = {},
                                             const std::function<std::filesystem::path()>& otherName = {});

}  // namespace glimmer
