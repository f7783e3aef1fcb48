#pragma once

#include <filesystem>
#include <string>

#include "common/files.h"

namespace glimmer::test {

/// Writes so many files of `size` bytes under the names 1, 2, 3 and so on, each the first that nobody has; how many it
/// could write.
inline int writeWithoutOverwriting(const std::filesystem::path& folder, int files, size_t size) {
    int written = 0;
    for (int name = 1; written < files && name <= 10 * files; ++name) {
        TemporaryOutput output(folder / std::to_string(name), {.overwrite = false, .flush = false});
        if (output.write(std::vector<uint8_t>(size)) && output.commit()) ++written;
    }
    return written;
}

}  // namespace glimmer::test
