#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "common/files.h"
#include "common/result.h"

namespace glimmer {

using FileContent = Result<std::vector<uint8_t>>;
/// Nothing: the file stays as it is.
using NewContent = std::optional<std::vector<uint8_t>>;

/// Makes the new content of a file out of what is in it: none when there is no file, a failure when it cannot be read.
/// A failure leaves the file alone and is the answer.
using FileChange = std::function<Result<NewContent>(const FileContent& now)>;

struct LockedEdit {
    uint64_t limit = uint64_t{4} << 20U;  ///< bytes that are read at most
    std::function<FileContent()> read;    ///< instead of readFile(), for who knows more of the file
    WriteOptions write;
};

/// Reads a file, changes it and writes it whole. No other process of this program does that meanwhile, so that nobody's
/// change is lost; waiting for it is bounded (file_lock.h). `change` may be long, but must not edit the same file.
Status editLockedFile(const std::filesystem::path& path, const FileChange& change, const LockedEdit& options = {});

}  // namespace glimmer
