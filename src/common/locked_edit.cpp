#include "common/locked_edit.h"

#include <system_error>

#include "common/file_lock.h"

namespace glimmer {

Status editLockedFile(const std::filesystem::path& path, const FileChange& change, const LockedEdit& options) {
    const FileLock lock(path);
    const auto read = [&]() -> FileContent {
        if (options.read) return options.read();
        std::error_code error;
        if (!std::filesystem::exists(path, error) && !error) return std::vector<uint8_t>();
        return readFile(path, options.limit);
    };
    const Result<NewContent> changed = change(read());
    if (!changed) return changed.failure();
    return *changed ? writeFile(path, **changed, options.write) : Status();
}

}  // namespace glimmer
