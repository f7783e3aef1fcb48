#include "common/files.h"

#include <atomic>
#include <cstdio>
#include <system_error>

#ifdef _WIN32
#include <io.h>
#include <process.h>
#else
#include <unistd.h>
#endif

namespace glimmer {

namespace {

#ifdef _WIN32
std::FILE* openFile(const std::filesystem::path& path, const wchar_t* mode) { return _wfopen(path.c_str(), mode); }
bool flushToDisk(std::FILE* file) { return std::fflush(file) == 0 && _commit(_fileno(file)) == 0; }
int processId() { return _getpid(); }
#define GLIMMER_MODE(text) L##text
#else
std::FILE* openFile(const std::filesystem::path& path, const char* mode) { return std::fopen(path.c_str(), mode); }
bool flushToDisk(std::FILE* file) { return std::fflush(file) == 0 && fsync(fileno(file)) == 0; }
int processId() { return getpid(); }
#define GLIMMER_MODE(text) text
#endif

FileWriter writeBytes = std::fwrite;

Failure cannotWrite(const std::filesystem::path& path) {
    return Failure{"The file " + utf8FromPath(path) + " cannot be written."};
}

}  // namespace

std::filesystem::path pathFromUtf8(std::string_view text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

std::string utf8FromPath(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

Result<std::vector<uint8_t>> readFile(const std::filesystem::path& path, uint64_t limit) {
    const Failure cannotRead{"The file " + utf8FromPath(path) + " cannot be read."};
    std::error_code error;
    const uint64_t size = std::filesystem::file_size(path, error);
    if (error) return cannotRead;
    if (size > limit) return Failure{"The file " + utf8FromPath(path) + " is too large."};
    std::FILE* file = openFile(path, GLIMMER_MODE("rb"));
    if (file == nullptr) return cannotRead;
    std::vector<uint8_t> data(static_cast<size_t>(size));
    const size_t got = data.empty() ? 0 : std::fread(data.data(), 1, data.size(), file);
    std::fclose(file);
    if (got != data.size()) return cannotRead;
    return data;
}

TemporaryOutput::TemporaryOutput(std::filesystem::path target) : target_(std::move(target)) {
    // A file that is protected stays, although the folder would let another one take its place.
    std::error_code error;
    const std::filesystem::file_status state = std::filesystem::status(target_, error);
    constexpr auto writable = std::filesystem::perms::owner_write;
    if (std::filesystem::exists(state) && (state.permissions() & writable) == std::filesystem::perms::none) return;
    // Unique among the program's instances and among files that one of them writes at a time.
    static std::atomic<unsigned> counter{0};
    for (int attempt = 0; attempt < 16 && file_ == nullptr; ++attempt) {
        temporary_ =
            target_.parent_path() / ("~gp" + std::to_string(processId()) + "-" + std::to_string(counter++) + ".tmp");
        file_ = openFile(temporary_, GLIMMER_MODE("wbx"));
    }
}

TemporaryOutput::~TemporaryOutput() { discard(); }

void TemporaryOutput::discard() {
    if (file_ == nullptr) return;
    std::fclose(file_);
    file_ = nullptr;
    std::error_code ignored;
    std::filesystem::remove(temporary_, ignored);
}

Status TemporaryOutput::write(std::span<const uint8_t> data) {
    if (file_ == nullptr || failed_) return cannotWrite(target_);
    if (!data.empty() && writeBytes(data.data(), 1, data.size(), file_) != data.size()) {
        failed_ = true;
        return cannotWrite(target_);
    }
    return {};
}

Status TemporaryOutput::commit() {
    if (file_ == nullptr || failed_ || !flushToDisk(file_)) {
        discard();
        return cannotWrite(target_);
    }
    std::fclose(file_);
    file_ = nullptr;
    std::error_code error;
    std::filesystem::rename(temporary_, target_, error);
    if (!error) return {};
    std::filesystem::remove(temporary_, error);
    return cannotWrite(target_);
}

void setFileWriter(FileWriter writer) { writeBytes = writer != nullptr ? writer : std::fwrite; }

Status writeFile(const std::filesystem::path& path, std::span<const uint8_t> data) {
    TemporaryOutput output(path);
    if (Status written = output.write(data); !written) return written;
    return output.commit();
}

}  // namespace glimmer
