#include "common/files.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <system_error>
#include <thread>

namespace glimmer {

namespace {

namespace fs = std::filesystem;

FileWriter writeBytes = std::fwrite;

constexpr const char* temporaryPrefix = "~gp";
constexpr const char* temporaryExtension = ".tmp";
constexpr std::string_view formerMark = "-former-";
constexpr std::string_view formerExtension = ".old";

Failure cannotWrite(const fs::path& path, const std::string& reason = {}) {
    return Failure{"The file " + utf8FromPath(path) + " cannot be written." + reason};
}

/// Scanners, indexers, previews and clients of clouds open a file that was just written, or the one that it is to
/// replace, for some milliseconds: what they keep from succeeding is tried again for a while.
template <class Operation>
FileTrouble withPatience(bool patient, Operation operation) {
    constexpr std::chrono::milliseconds pause{25};
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (true) {
        const FileTrouble trouble = operation();
        const bool passing =
            trouble == FileTrouble::InUse || trouble == FileTrouble::Refused || trouble == FileTrouble::HalfWay;
        if (!passing || !patient || std::chrono::steady_clock::now() >= end) return trouble;
        std::this_thread::sleep_for(pause);
    }
}

}  // namespace

fs::path pathFromUtf8(std::string_view text) { return fs::path(std::u8string(text.begin(), text.end())); }

std::string utf8FromPath(const fs::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

Result<std::vector<uint8_t>> readFile(const fs::path& path, uint64_t limit) {
    const Failure cannotRead{"The file " + utf8FromPath(path) + " cannot be read."};
    std::error_code error;
    const uint64_t size = std::filesystem::file_size(path, error);
    if (error) return cannotRead;
    if (size > limit) return Failure{"The file " + utf8FromPath(path) + " is too large."};
    std::FILE* file = openFile(path, OpenMode::Read);
    if (file == nullptr) return cannotRead;
    std::vector<uint8_t> data(static_cast<size_t>(size));
    const size_t got = data.empty() ? 0 : std::fread(data.data(), 1, data.size(), file);
    std::fclose(file);
    if (got != data.size()) return cannotRead;
    return data;
}

namespace {

/// Why a write just failed.
FileTrouble writingTrouble() { return errno == ENOSPC ? FileTrouble::Full : FileTrouble::Other; }

}  // namespace

TemporaryOutput::TemporaryOutput(fs::path target, WriteOptions options)
    : target_(std::move(target)), options_(options) {
    // A file that is protected stays, although the folder would let another one take its place.
    std::error_code error;
    const fs::file_status state = fs::status(target_, error);
    constexpr auto writable = fs::perms::owner_write;
    if (options_.overwrite && fs::exists(state) && (state.permissions() & writable) == fs::perms::none) {
        trouble_ = FileTrouble::Protected;
        return;
    }
    // Unique among the program's instances and among files that one of them writes at a time; what a process of the
    // same number left behind, or another machine writes on the same share, is stepped over.
    static std::atomic<unsigned> counter{0};
    constexpr int mostInTheWay = 1000;
    for (int attempt = 0; attempt < mostInTheWay && file_ == nullptr; ++attempt) {
        temporary_ = target_.parent_path() / (temporaryPrefix + std::to_string(processId()) + "-" +
                                              std::to_string(counter++) + temporaryExtension);
        trouble_ = FileTrouble::None;
        file_ = fileOperations().create(temporary_, trouble_);
        if (trouble_ != FileTrouble::Exists) break;
    }
}

TemporaryOutput::~TemporaryOutput() { discard(); }

void TemporaryOutput::discard() {
    if (file_ == nullptr && !complete_) return;
    if (file_ != nullptr) std::fclose(file_);
    file_ = nullptr;
    complete_ = false;
    std::error_code ignored;
    fs::remove(temporary_, ignored);
}

Status TemporaryOutput::refuse(FileTrouble trouble) {
    discard();
    trouble_ = trouble;
    return cannotWrite(target_);
}

Status TemporaryOutput::write(std::span<const uint8_t> data) {
    if (file_ == nullptr) return cannotWrite(target_);
    errno = 0;
    if (data.empty() || writeBytes(data.data(), 1, data.size(), file_) == data.size()) return {};
    return refuse(writingTrouble());
}

Status TemporaryOutput::complete() {
    if (complete_) return {};
    if (file_ == nullptr) return cannotWrite(target_);
    errno = 0;
    const bool written = options_.flush ? fileOperations().flush(file_) : std::fflush(file_) == 0;
    const bool closed = written && std::fclose(file_) == 0;
    if (written) file_ = nullptr;
    complete_ = true;  // closed or not, there is a file
    return closed ? Status() : refuse(writingTrouble());
}

Status TemporaryOutput::commit() {
    if (Status done = complete(); !done) return done;
    const FileOperations& system = fileOperations();
    const FileTrouble trouble = withPatience(options_.patient, [&] {
        return options_.overwrite ? system.replace(temporary_, target_, options_.inherits)
                                  : system.place(temporary_, target_);
    });
    // Half-way nothing has the name: the new file, whole, stays as well.
    if (trouble == FileTrouble::None || trouble == FileTrouble::HalfWay) complete_ = false;
    if (trouble == FileTrouble::None) return {};
    if (trouble != FileTrouble::Exists && trouble != FileTrouble::HalfWay) return refuse(trouble);
    trouble_ = trouble;
    return cannotWrite(target_);
}

Status moveOver(const fs::path& file, const fs::path& target) {
    const FileTrouble trouble = withPatience(true, [&] { return fileOperations().replace(file, target, true); });
    return trouble == FileTrouble::None ? Status() : cannotWrite(target, explained(target, trouble));
}

fs::path formerPath(const fs::path& target) {
    fs::path name = pathFromUtf8(temporaryPrefix + std::to_string(processId()));
    name += formerMark;
    name += target.filename();
    name += formerExtension;
    return target.parent_path() / name;
}

namespace {

/// A file that formerPath() names: back to its own name when nobody has that, otherwise it is outdated.
void settleFormer(const fs::path& path, const std::string& name) {
    const size_t mark = name.find(formerMark);
    if (mark == std::string::npos) return;
    const size_t start = mark + formerMark.size();
    const std::string own = name.substr(start, name.size() - formerExtension.size() - start);
    std::error_code ignored;
    if (!own.empty() && fileOperations().place(path, path.parent_path() / pathFromUtf8(own)) == FileTrouble::Exists)
        fs::remove(path, ignored);
}

}  // namespace

void removeAbandonedOutputs(const fs::path& folder) {
    const fs::file_time_type oldest = fs::file_time_type::clock::now() - std::chrono::hours(1);
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        const std::string name = utf8FromPath(at->path().filename());
        const bool former = name.ends_with(formerExtension);
        if (!name.starts_with(temporaryPrefix) || !(former || name.ends_with(temporaryExtension))) continue;
        std::error_code unknown;
        const bool file = fs::is_regular_file(at->symlink_status(unknown));
        if (!file || at->last_write_time(unknown) >= oldest || unknown) continue;
        if (former)
            settleFormer(at->path(), name);
        else
            fs::remove(at->path(), unknown);
    }
}

void setFileWriter(FileWriter writer) { writeBytes = writer != nullptr ? writer : std::fwrite; }

Status writeFile(const fs::path& path, std::span<const uint8_t> data, WriteOptions options) {
    TemporaryOutput output(path, options);
    if (output.write(data) && output.commit()) return {};
    return cannotWrite(path, options.patient ? explained(path, output.trouble()) : std::string());
}

bool flushFile(const fs::path& path) {
    std::FILE* file = openFile(path, OpenMode::Change);
    if (file == nullptr) return false;
    const bool flushed = fileOperations().flush(file);
    std::fclose(file);
    return flushed;
}

}  // namespace glimmer
