#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/file_operations.h"
#include "common/result.h"

namespace glimmer {

/// A path from UTF-8 text and back.
std::filesystem::path pathFromUtf8(std::string_view text);
std::string utf8FromPath(const std::filesystem::path& path);

/// The whole file. Fails when it cannot be opened or is longer than `limit` bytes.
Result<std::vector<uint8_t>> readFile(const std::filesystem::path& path, uint64_t limit);

/// How a file is written.
struct WriteOptions {
    bool overwrite = true;  ///< false: a file of that name stays, and so does one that another process makes meanwhile
    /// For a person's own files: rights, attributes, streams and creation time of the file that is replaced go over to
    /// the new one. Otherwise the old file is exchanged for the new one in one step, whatever happens to the machine.
    bool inherits = false;
    bool flush = true;    ///< is on the disk before it has its name: a power loss leaves the old file or the new one
    bool patient = true;  ///< waits up to a second for a program (a virus scanner) that looks at one of the files
};

/// A file that appears under its name only when it is complete. The bytes go to a temporary file in the same
/// folder; commit() flushes it to the disk and puts it in the target's place. Without commit() the destructor removes
/// the temporary file and the target is as it was. A target that is read-only is not replaced.
class TemporaryOutput {
public:
    explicit TemporaryOutput(std::filesystem::path target, WriteOptions options = {});
    ~TemporaryOutput();
    TemporaryOutput(const TemporaryOutput&) = delete;
    TemporaryOutput& operator=(const TemporaryOutput&) = delete;
    TemporaryOutput(TemporaryOutput&&) = delete;
    TemporaryOutput& operator=(TemporaryOutput&&) = delete;

    /// False when the temporary file could not be made; write() and commit() then fail too.
    [[nodiscard]] bool open() const { return file_ != nullptr; }
    Status write(std::span<const uint8_t> data);
    /// The last that can fail for want of room: afterwards all is on the disk and only the name is missing. commit()
    /// does it unless it is done.
    Status complete();
    Status commit();
    /// Why commit() failed, or why it is not open(). With Exists and without `overwrite` the file is still there:
    /// rename() it and commit again.
    [[nodiscard]] FileTrouble trouble() const { return trouble_; }
    /// Another name in the same folder.
    void rename(const std::string& fileName) { target_.replace_filename(pathFromUtf8(fileName)); }
    [[nodiscard]] const std::filesystem::path& target() const { return target_; }

private:
    void discard();
    Status refuse(FileTrouble trouble);

    std::filesystem::path target_;
    std::filesystem::path temporary_;
    WriteOptions options_;
    std::FILE* file_ = nullptr;
    bool complete_ = false;
    FileTrouble trouble_ = FileTrouble::None;
};

/// Moves a closed file over another in the same volume, with the patience of TemporaryOutput.
Status moveOver(const std::filesystem::path& file, const std::filesystem::path& target);

/// Where the file that another one replaces is while it is replaced, in the folder of both; its name tells its own.
std::filesystem::path formerPath(const std::filesystem::path& target);

/// Removes what a process that was killed in the middle of writing left in the folder: temporary files that nobody has
/// touched for an hour, and former files; one whose name nobody has is given that again. One that is being written is
/// safe from that: the system does not remove an open file.
void removeAbandonedOutputs(const std::filesystem::path& folder);

/// What TemporaryOutput puts bytes into its file with: std::fwrite, unless a test replaces it by a disk that is full.
/// Null means std::fwrite again.
using FileWriter = size_t (*)(const void* data, size_t size, size_t count, std::FILE* file);
void setFileWriter(FileWriter writer);

/// Writes the whole file; see TemporaryOutput. When it was patient, the failure says what is known of the reason.
Status writeFile(const std::filesystem::path& path, std::span<const uint8_t> data, WriteOptions options = {});
/// Writes through to the disk what a file holds; false when it cannot.
bool flushFile(const std::filesystem::path& path);

}  // namespace glimmer
