#include "common/file_operations.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>

#ifdef _WIN32
#include <io.h>
#include <process.h>
#include <share.h>
#include <stdlib.h>
#else
#include <unistd.h>
#endif

namespace glimmer {

namespace {

namespace fs = std::filesystem;

#ifdef _WIN32

// Not fopen's "x": Windows' own run-time refuses every letter that it does not know, and this one is newer.
std::FILE* createFile(const fs::path& path, FileTrouble& trouble) {
    const int file = _wsopen(path.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY | _O_NOINHERIT, _SH_DENYWR,
                             _S_IREAD | _S_IWRITE);
    if (file < 0) {
        constexpr unsigned long fileNotFound = 2;  // what controlled folder access answers; a missing folder is 3
        trouble = errno == EEXIST                                ? FileTrouble::Exists
                  : errno == EACCES || _doserrno == fileNotFound ? FileTrouble::Refused
                                                                 : FileTrouble::Other;
        return nullptr;
    }
    std::FILE* stream = _fdopen(file, "wb");
    if (stream != nullptr) return stream;
    trouble = FileTrouble::Other;
    _close(file);
    _wunlink(path.c_str());
    return nullptr;
}

FileTrouble placeFile(const fs::path& file, const fs::path& target) {
    if (_wrename(file.c_str(), target.c_str()) == 0) return FileTrouble::None;
    std::error_code error;
    return errno == EEXIST || fs::exists(fs::symlink_status(target, error)) ? FileTrouble::Exists : FileTrouble::Other;
}

#else

std::FILE* createFile(const fs::path& path, FileTrouble& trouble) {
    const int file = open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
    if (file < 0) {
        trouble = errno == EEXIST                     ? FileTrouble::Exists
                  : errno == EACCES || errno == EPERM ? FileTrouble::Refused
                                                      : FileTrouble::Other;
        return nullptr;
    }
    return fdopen(file, "wb");
}

FileTrouble placeFile(const fs::path& file, const fs::path& target) {
    if (link(file.c_str(), target.c_str()) != 0) return errno == EEXIST ? FileTrouble::Exists : FileTrouble::Other;
    unlink(file.c_str());
    return FileTrouble::None;
}

#endif

FileTrouble replaceFile(const fs::path& file, const fs::path& target, bool /*inherits*/) {
    std::error_code error;
    fs::rename(file, target, error);
    if (!error) return FileTrouble::None;
    if (fs::is_directory(target, error)) return FileTrouble::Other;
#ifdef _WIN32
    return FileTrouble::InUse;  // the likeliest; more cannot be known here
#else
    return FileTrouble::Other;
#endif
}

std::string explainNothing(const fs::path& /*target*/, FileTrouble /*trouble*/) { return {}; }

constexpr FileOperations portable{createFile, replaceFile, placeFile, explainNothing};
const FileOperations* installed = &portable;

}  // namespace

#ifdef _WIN32
std::FILE* openFile(const fs::path& path, OpenMode mode) {
    return _wfopen(path.c_str(), mode == OpenMode::Read ? L"rb" : L"r+b");
}
bool flushToDisk(std::FILE* file) { return std::fflush(file) == 0 && _commit(_fileno(file)) == 0; }
int processId() { return _getpid(); }
#else
std::FILE* openFile(const fs::path& path, OpenMode mode) {
    return std::fopen(path.c_str(), mode == OpenMode::Read ? "rb" : "r+b");
}
bool flushToDisk(std::FILE* file) { return std::fflush(file) == 0 && fsync(fileno(file)) == 0; }
int processId() { return getpid(); }
#endif

const FileOperations& portableFileOperations() { return portable; }

void setFileOperations(const FileOperations* operations) { installed = operations != nullptr ? operations : &portable; }

const FileOperations& fileOperations() { return *installed; }

std::string explained(const fs::path& target, FileTrouble trouble) {
    const std::string sentence =
        trouble == FileTrouble::Full ? "The disk is full." : installed->explain(target, trouble);
    return sentence.empty() ? sentence : "\r\n" + sentence;
}

}  // namespace glimmer
