#include "program_times.h"

#include <chrono>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace glimmer::bench {

namespace {

double now() {
    using Clock = std::chrono::steady_clock;
    return std::chrono::duration<double, std::milli>(Clock::now().time_since_epoch()).count();
}

}  // namespace

#ifdef _WIN32

namespace {

/// Plain names only: no quotation marks, no backslash at the end.
std::wstring quoted(const std::string& text) { return L"\"" + std::filesystem::path(text).wstring() + L"\""; }

}  // namespace

std::optional<ProcessTimes> runProgram(const std::string& program, const std::vector<std::string>& arguments) {
    std::wstring line = quoted(program);
    for (const std::string& argument : arguments) line += L" " + quoted(argument);
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION made = {};
    const double begin = now();
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &made) == FALSE)
        return std::nullopt;
    WaitForSingleObject(made.hProcess, INFINITE);
    const ProcessTimes times{now() - begin, 0};
    DWORD code = 1;
    GetExitCodeProcess(made.hProcess, &code);
    CloseHandle(made.hThread);
    CloseHandle(made.hProcess);
    if (code != 0) return std::nullopt;
    return times;
}

std::string ownProgram(const std::string& name) {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return (std::filesystem::path(path).parent_path() / (name + ".exe")).string();
}

#else

std::optional<ProcessTimes> runProgram(const std::string& program, const std::vector<std::string>& arguments) {
    std::vector<std::string> texts = arguments;
    texts.insert(texts.begin(), program);
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    for (const int output : {STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&quiet, output, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const double begin = now();
    const int failed = posix_spawnp(&child, program.c_str(), &quiet, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&quiet);
    int status = 0;
    rusage usage{};
    if (failed != 0 || wait4(child, &status, 0, &usage) != child) return std::nullopt;
    ProcessTimes times{now() - begin, 0};
    for (const timeval& part : {usage.ru_utime, usage.ru_stime})
        times.processor += static_cast<double>(part.tv_sec) * 1e3 + static_cast<double>(part.tv_usec) / 1e3;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return std::nullopt;
    return times;
}

std::string ownProgram(const std::string& name) {
    return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / name).string();
}

#endif

}  // namespace glimmer::bench
