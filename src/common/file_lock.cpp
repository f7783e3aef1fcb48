#include "common/file_lock.h"

#include <chrono>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>

#ifdef _WIN32
#include <io.h>
#include <share.h>
#include <stdlib.h>
#else
#include <sys/file.h>
#include <unistd.h>
#endif

namespace glimmer {

namespace {

constexpr std::chrono::milliseconds pause{10};

struct Attempt {
    int file = -1;
    bool isHeld = false;  ///< failed only because somebody else has it
};

#ifdef _WIN32
// Nobody else may open the file while this handle lives, and the system removes it with the handle.
Attempt takeLock(const std::filesystem::path& lock) {
    const int file = _wsopen(lock.c_str(), _O_CREAT | _O_RDWR | _O_BINARY | _O_TEMPORARY | _O_NOINHERIT, _SH_DENYRW,
                             _S_IREAD | _S_IWRITE);
    if (file >= 0) return {file, false};
    constexpr unsigned long sharingViolation = 32;
    return {-1, _doserrno == sharingViolation};
}
void release(int file) { _close(file); }
#else
Attempt takeLock(const std::filesystem::path& lock) {
    const int file = open(lock.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
    if (file < 0) return {};
    struct stat mine {};
    struct stat there {};
    // The holder before us removes the file: then our lock is on a file that has no name any more.
    if (flock(file, LOCK_EX | LOCK_NB) == 0 && fstat(file, &mine) == 0 && stat(lock.c_str(), &there) == 0 &&
        mine.st_ino == there.st_ino)
        return {file, false};
    close(file);
    return {-1, true};
}
void release(int file) { close(file); }
#endif

std::filesystem::path lockPath(const std::filesystem::path& target) {
    std::filesystem::path path = target;
    path += ".lock";
    return path;
}

}  // namespace

FileLock::FileLock(const std::filesystem::path& target, int attempts) : path_(lockPath(target)) {
    // A file that is being removed refuses to be opened just as a folder that takes no file does: only what is
    // refused again and again cannot be made.
    constexpr int refusalsToGiveUp = 5;
    int refusals = 0;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const Attempt taken = takeLock(path_);
        file_ = taken.file;
        if (file_ >= 0) return;
        refusals = taken.isHeld ? 0 : refusals + 1;
        if (refusals == refusalsToGiveUp) return;
        if (attempt + 1 < attempts) std::this_thread::sleep_for(pause);
    }
}

FileLock::~FileLock() {
    if (file_ < 0) return;
#ifndef _WIN32
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
#endif
    release(file_);
}

}  // namespace glimmer
