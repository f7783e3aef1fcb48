#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/result.h"

namespace glimmer {

/// A path from UTF-8 text and back.
std::filesystem::path pathFromUtf8(std::string_view text);
std::string utf8FromPath(const std::filesystem::path& path);

/// The whole file. Fails when it cannot be opened or is longer than `limit` bytes.
Result<std::vector<uint8_t>> readFile(const std::filesystem::path& path, uint64_t limit);

/// A file that appears under its name only when it is complete. The bytes go to a temporary file in the same
/// folder; commit() flushes it to the disk and puts it in the target's place in one step. Without commit() the
/// destructor removes the temporary file and the target is as it was. A target that is read-only is not replaced.
class TemporaryOutput {
public:
    explicit TemporaryOutput(std::filesystem::path target);
    ~TemporaryOutput();
    TemporaryOutput(const TemporaryOutput&) = delete;
    TemporaryOutput& operator=(const TemporaryOutput&) = delete;
    TemporaryOutput(TemporaryOutput&&) = delete;
    TemporaryOutput& operator=(TemporaryOutput&&) = delete;

    /// False when the temporary file could not be made; write() and commit() then fail too.
    [[nodiscard]] bool open() const { return file_ != nullptr; }
    Status write(std::span<const uint8_t> data);
    Status commit();

private:
    void discard();

    std::filesystem::path target_;
    std::filesystem::path temporary_;
    std::FILE* file_ = nullptr;
    bool failed_ = false;
};

/// What TemporaryOutput puts bytes into its file with: std::fwrite, unless a test replaces it by a disk that is full.
/// Null means std::fwrite again.
using FileWriter = size_t (*)(const void* data, size_t size, size_t count, std::FILE* file);
void setFileWriter(FileWriter writer);

/// Replaces the content of a file in one step; see TemporaryOutput.
Status writeFile(const std::filesystem::path& path, std::span<const uint8_t> data);

}  // namespace glimmer
