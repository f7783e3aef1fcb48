#pragma once

#include <filesystem>

namespace glimmer {

/// Keeps other processes of this program from reading and replacing a file between our reading and replacing it. The
/// lock is a file of its own beside it, which vanishes with its holder. Waiting is bounded and the lock advisory: who
/// cannot get it (a folder that takes no new file, a holder that hangs) goes on without, since replacing a file is
/// safe in itself.
class FileLock {
public:
    explicit FileLock(const std::filesystem::path& target) : FileLock(target, standardAttempts) {}
    /// Tries so many times, 10 milliseconds apart.
    FileLock(const std::filesystem::path& target, int attempts);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    FileLock(FileLock&&) = delete;
    FileLock& operator=(FileLock&&) = delete;

    [[nodiscard]] bool held() const { return file_ >= 0; }

private:
    static constexpr int standardAttempts =
        300;  // three seconds: a process that saves in a loop may be lucky for a while

    std::filesystem::path path_;
    int file_ = -1;
};

}  // namespace glimmer
