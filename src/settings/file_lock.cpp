#include "settings/file_lock.h"

#include <chrono>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>

#ifdef _WIN32
#include <io.h>
#include <share.h>
#else
#include <sys/file.h>
#include <unistd.h>
#endif

namespace glimmer {

namespace {

constexpr std::chrono::milliseconds pause{10};  // a hundred make a second: a save takes a few milliseconds

#ifdef _WIN32
// Nobody else may open the file while this handle lives, and the system removes it with the handle.
int takeLock(const std::filesystem::path& lock) {
    return _wsopen(lock.c_str(), _O_CREAT | _O_RDWR | _O_BINARY | _O_TEMPORARY | _O_NOINHERIT, _SH_DENYRW,
                   _S_IREAD | _S_IWRITE);
}
void release(int file) { _close(file); }
#else
int takeLock(const std::filesystem::path& lock) {
    const int file = open(lock.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
    if (file < 0) return -1;
    struct stat mine {};
    struct stat there {};
    // The holder before us removes the file: then our lock is on a file that has no name any more.
    if (flock(file, LOCK_EX | LOCK_NB) == 0 && fstat(file, &mine) == 0 && stat(lock.c_str(), &there) == 0 &&
        mine.st_ino == there.st_ino)
        return file;
    close(file);
    return -1;
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
    for (int attempt = 0; attempt < attempts; ++attempt) {
        file_ = takeLock(path_);
        if (file_ >= 0) return;
        std::error_code error;
        if (attempt > 0 && !std::filesystem::exists(path_, error)) return;  // not held by anybody: cannot be made
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
