#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>

#include "facts.h"

namespace glimmer::facts {

namespace {

namespace fs = std::filesystem;

/// A folder for the answers, gone at the end.
class Folder {
public:
    Folder() : path_(fs::temp_directory_path() / ("glimmerpad facts " + std::to_string(GetCurrentProcessId()))) {
        fs::create_directories(path_);
    }
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    Folder(Folder&&) = delete;
    Folder& operator=(Folder&&) = delete;

    [[nodiscard]] fs::path file(const wchar_t* name) const { return path_ / name; }

private:
    fs::path path_;
};

void write(const fs::path& path) {
    std::FILE* file = _wfopen(path.c_str(), L"wb");
    if (file == nullptr) return;
    const std::vector<char> bytes(4096, 'x');
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::fclose(file);
}

/// The C library's answer to a mode that newer ones know: fail when the file is there.
std::string exclusiveMode(const Folder& folder) {
    errno = 0;
    std::FILE* file = _wfopen(folder.file(L"wbx").c_str(), L"wbx");
    if (file == nullptr) return "refused, error " + std::to_string(errno);
    std::fclose(file);
    file = _wfopen(folder.file(L"wbx").c_str(), L"wbx");
    if (file == nullptr) return "known";
    std::fclose(file);
    return "overlooked";
}

/// What a rename says while somebody else has the target open for reading.
std::string renameOver(const Folder& folder, DWORD sharing) {
    write(folder.file(L"new"));
    write(folder.file(L"old"));
    const HANDLE reader =
        CreateFileW(folder.file(L"old").c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr);
    const BOOL done = MoveFileExW(folder.file(L"new").c_str(), folder.file(L"old").c_str(), MOVEFILE_REPLACE_EXISTING);
    const DWORD error = done != FALSE ? 0 : GetLastError();
    CloseHandle(reader);
    return error == 0 ? "done" : "refused, error " + std::to_string(error);
}

/// Fifty times what saving a small file is: written, brought to the disk, renamed over the old one.
std::string saving(const Folder& folder) {
    std::vector<double> times;
    for (int round = 0; round < 50; ++round) {
        const auto start = std::chrono::steady_clock::now();
        const int file =
            _wopen(folder.file(L"part").c_str(), _O_CREAT | _O_TRUNC | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
        const std::vector<char> bytes(65536, 'x');
        _write(file, bytes.data(), static_cast<unsigned>(bytes.size()));
        _commit(file);
        _close(file);
        MoveFileExW(folder.file(L"part").c_str(), folder.file(L"saved").c_str(), MOVEFILE_REPLACE_EXISTING);
        times.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    std::sort(times.begin(), times.end());
    char text[80];
    std::snprintf(text, sizeof text, "median %.1f ms, longest %.1f ms", times[times.size() / 2], times.back());
    return text;
}

/// How far the C library's time of a file, dated in the middle of that month, is from the system's: seconds.
std::string difference(const Folder& folder, WORD month) {
    write(folder.file(L"dated"));
    constexpr WORD year = 2024;
    const SYSTEMTIME noon = {year, month, 0, 15, 12, 0, 0, 0};
    FILETIME time = {};
    SystemTimeToFileTime(&noon, &time);
    const HANDLE file =
        CreateFileW(folder.file(L"dated").c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    SetFileTime(file, nullptr, nullptr, &time);
    CloseHandle(file);
    struct _stat64 told = {};
    if (_wstat64(folder.file(L"dated").c_str(), &told) != 0) return "unknown";
    const ULARGE_INTEGER ticks = {{time.dwLowDateTime, time.dwHighDateTime}};
    constexpr int64_t ticksASecond = 10000000;
    constexpr int64_t from1601To1970 = 11644473600;
    const int64_t seconds = static_cast<int64_t>(ticks.QuadPart) / ticksASecond - from1601To1970;
    return std::to_string(told.st_mtime - seconds) + " s";
}

}  // namespace

void askFiles(Report& report) {
    const Folder folder;
    report.set("files.fopen-wbx", exclusiveMode(folder));
    constexpr DWORD toOthers = FILE_SHARE_READ | FILE_SHARE_WRITE;
    report.set("files.rename-over-open", renameOver(folder, toOthers));
    report.set("files.rename-over-open-that-may-be-deleted", renameOver(folder, toOthers | FILE_SHARE_DELETE));
    report.set("files.saving", saving(folder));
}

void askFileTimes(Report& report) {
    const Folder folder;
    report.set("times.january", difference(folder, 1));
    report.set("times.july", difference(folder, 7));
}

}  // namespace glimmer::facts
