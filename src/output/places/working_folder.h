#pragma once

#include <chrono>
#include <filesystem>

#include "common/result.h"

namespace glimmer {

/// The folder in which the program puts pictures for other programs (e-mail, publishing, external editor), and its
/// memory of what it put there: a list in the folder names each file with its size and time. Only files of that list
/// which nobody changed since are ever deleted; the user's own files in the same folder never are.
class WorkingFolder {
public:
    explicit WorkingFolder(std::filesystem::path folder);

    /// Notes that the program has just written this file, which must lie in the folder or below it. A failure means
    /// only that the file will not be cleaned up.
    Status remember(const std::filesystem::path& file);

    /// Deletes the program's files that were written more than `age` ago and forgets those that are gone or were
    /// changed; only in this sub-folder when one is named. Returns how many were deleted.
    size_t cleanUp(std::chrono::hours age, std::filesystem::file_time_type now,
                   const std::filesystem::path& subFolder = {});

private:
    std::filesystem::path folder_;
};

}  // namespace glimmer
