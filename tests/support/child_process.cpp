#include "support/child_process.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <thread>
#endif

namespace glimmer::test {

#ifdef _WIN32

namespace {

std::wstring commandLine(const std::filesystem::path& program, const std::vector<std::filesystem::path>& arguments) {
    std::wstring line = L"\"" + program.wstring() + L"\"";
    for (const auto& argument : arguments) line += L" \"" + argument.wstring() + L"\"";
    return line;
}

}  // namespace

ChildProcess::ChildProcess(const std::filesystem::path& program, const std::vector<std::filesystem::path>& arguments)
    : ChildProcess(commandLine(program, arguments), std::filesystem::current_path()) {}

ChildProcess::ChildProcess(std::wstring commandLine, const std::filesystem::path& folder) {
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION made = {};
    if (CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(), &start,
                       &made) == FALSE)
        return;
    CloseHandle(made.hThread);
    process_ = reinterpret_cast<intptr_t>(made.hProcess);
}

unsigned long ChildProcess::id() const { return GetProcessId(reinterpret_cast<HANDLE>(process_)); }

std::optional<int> ChildProcess::wait(unsigned milliseconds) {
    HANDLE handle = reinterpret_cast<HANDLE>(process_);
    DWORD code = 0;
    if (process_ == 0 || WaitForSingleObject(handle, milliseconds) != WAIT_OBJECT_0) return std::nullopt;
    GetExitCodeProcess(handle, &code);
    return static_cast<int>(code);
}

bool ChildProcess::running() const {
    return process_ != 0 && WaitForSingleObject(reinterpret_cast<HANDLE>(process_), 0) == WAIT_TIMEOUT;
}

void ChildProcess::kill() {
    if (process_ == 0) return;
    HANDLE handle = reinterpret_cast<HANDLE>(process_);
    TerminateProcess(handle, 1);
    WaitForSingleObject(handle, INFINITE);
    CloseHandle(handle);
    process_ = 0;
}

std::filesystem::path testProgram(const std::string& name) {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path() / (name + ".exe");
}

#else

ChildProcess::ChildProcess(const std::filesystem::path& program, const std::vector<std::filesystem::path>& arguments) {
    std::vector<std::string> texts = {program.string()};
    for (const auto& argument : arguments) texts.push_back(argument.string());
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    pid_t child = 0;
    if (posix_spawn(&child, program.c_str(), nullptr, nullptr, pointers.data(), environ) == 0) process_ = child;
}

bool ChildProcess::running() const {
    return process_ != 0 && waitpid(static_cast<pid_t>(process_), nullptr, WNOHANG) == 0;
}

std::optional<int> ChildProcess::wait(unsigned milliseconds) {
    constexpr unsigned step = 10;
    for (unsigned waited = 0; process_ != 0; waited += step) {
        int status = 0;
        if (waitpid(static_cast<pid_t>(process_), &status, WNOHANG) > 0) {
            process_ = 0;
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        }
        if (waited >= milliseconds) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(step));
    }
    return std::nullopt;
}

void ChildProcess::kill() {
    if (process_ == 0) return;
    ::kill(static_cast<pid_t>(process_), SIGKILL);
    waitpid(static_cast<pid_t>(process_), nullptr, 0);
    process_ = 0;
}

std::filesystem::path testProgram(const std::string& name) {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / name;
}

#endif

ChildProcess::~ChildProcess() { kill(); }

}  // namespace glimmer::test
