#include <chrono>
#include <cstdio>
#include <fstream>
#include <regex>
#include <sstream>

#include "runner.h"

namespace glimmer::runner {

namespace {

namespace fs = std::filesystem;

/// The sums of googletest's report, and how many tests it calls skipped.
struct Sums {
    int tests = -1;  ///< there is no report
    int failures = 0;
    int skipped = 0;
};

Sums readReport(const fs::path& file) {
    std::stringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    const std::string report = text.str();
    Sums sums;
    const auto number = [&report](const char* name) {
        std::smatch found;
        const std::regex pattern(std::string("<testsuites[^>]* ") + name + "=\"([0-9]+)\"");
        return std::regex_search(report, found, pattern) ? std::stoi(found[1]) : -1;
    };
    sums.tests = number("tests");
    sums.failures = number("failures") + number("errors");
    for (size_t at = report.find("<skipped"); at != std::string::npos; at = report.find("<skipped", at + 1))
        ++sums.skipped;
    return sums;
}

/// The process and everything that it starts, to be ended together.
class Family {
public:
    Family() : job_(CreateJobObjectW(nullptr, nullptr)) {
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        SetInformationJobObject(job_, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    }
    ~Family() { CloseHandle(job_); }
    Family(const Family&) = delete;
    Family& operator=(const Family&) = delete;
    Family(Family&&) = delete;
    Family& operator=(Family&&) = delete;

    void add(HANDLE process) const { AssignProcessToJobObject(job_, process); }
    void end() const { TerminateJobObject(job_, 1); }

private:
    HANDLE job_;
};

/// A file that the process may write its output to.
HANDLE outputFile(const fs::path& path) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, nullptr);
}

void judge(Result& result, DWORD code, const fs::path& report) {
    const Sums sums = readReport(report);
    if (sums.tests < 0) {
        // A program that is no test, or one that ended before it could report.
        result.outcome = code == 0 ? Outcome::Pass : Outcome::Fail;
        result.details = "ended with code " + std::to_string(static_cast<int>(code));
        return;
    }
    const int passed = sums.tests - sums.failures - sums.skipped;
    result.details = std::to_string(passed) + " passed";
    if (sums.skipped != 0) result.details += ", " + std::to_string(sums.skipped) + " skipped";
    if (sums.failures != 0) result.details += ", " + std::to_string(sums.failures) + " failed";
    if (code != 0 && sums.failures == 0)
        result.details += ", ended with code " + std::to_string(static_cast<int>(code));
    if (code != 0 || sums.failures != 0)
        result.outcome = Outcome::Fail;
    else
        result.outcome = passed == 0 && sums.skipped != 0 ? Outcome::Skip : Outcome::Pass;
}

}  // namespace

std::vector<Program> readOrder(const fs::path& file, const std::vector<std::wstring>& names) {
    std::vector<Program> programs;
    std::wifstream order(file.c_str());
    for (std::wstring line; std::getline(order, line);) {
        if (line.ends_with(L'\r')) line.pop_back();
        std::wistringstream words(line);
        Program program;
        if (!(words >> program.name >> program.seconds >> program.program)) continue;
        std::getline(words >> std::ws, program.arguments);
        if (names.empty() || std::find(names.begin(), names.end(), program.name) != names.end())
            programs.push_back(program);
    }
    return programs;
}

Result run(const Program& program, const fs::path& folder) {
    Result result{program.name, Outcome::Fail, "", 0};
    const fs::path results = folder / "results";
    const fs::path report = results / (program.name + L".xml");
    std::error_code ignored;
    fs::remove(report, ignored);
    const fs::path file = folder / "tests" / (program.program + L".exe");
    // Its path may have letters that a test's main function does not get: from the current folder it has none.
    const std::wstring asTest = L"--gtest_output=xml:results\\" + report.filename().wstring();
    std::wstring line = L"\"" + file.wstring() + L"\" " + (program.arguments.empty() ? asTest : program.arguments);

    const HANDLE output = outputFile(results / (program.name + L".log"));
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = output;
    start.hStdError = output;
    PROCESS_INFORMATION made = {};
    const auto began = std::chrono::steady_clock::now();
    const BOOL started = CreateProcessW(file.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr,
                                        folder.c_str(), &start, &made);
    const DWORD error = GetLastError();
    CloseHandle(output);
    if (started == FALSE) {
        result.details = "does not start, error " + std::to_string(error);
        return result;
    }
    const Family family;
    family.add(made.hProcess);
    ResumeThread(made.hThread);
    if (WaitForSingleObject(made.hProcess, program.seconds * 1000) == WAIT_TIMEOUT) {
        photographScreen(results / (program.name + L".png"));
        family.end();
        TerminateProcess(made.hProcess, 1);  // should it have left the family
        WaitForSingleObject(made.hProcess, INFINITE);
        result.outcome = Outcome::TimeOut;
        result.details = "ended after " + std::to_string(program.seconds) + " s";
    } else {
        DWORD code = 0;
        GetExitCodeProcess(made.hProcess, &code);
        judge(result, code, report);
    }
    CloseHandle(made.hThread);
    CloseHandle(made.hProcess);
    result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
    return result;
}

std::string table(const std::vector<Result>& results) {
    constexpr const char* words[] = {"PASS", "FAIL", "SKIP", "TIMEOUT"};
    int counts[std::size(words)] = {};
    std::string text;
    for (const Result& result : results) {
        const auto outcome = static_cast<size_t>(result.outcome);
        ++counts[outcome];
        char line[300];
        std::snprintf(line, sizeof line, "%-8s %-30ls %6.1f s  %s\r\n", words[outcome], result.name.c_str(),
                      result.seconds, result.details.c_str());
        text += line;
    }
    text += "\r\n";
    for (size_t i = 0; i < std::size(words); ++i)
        text += std::string(i == 0 ? "" : ", ") + words[i] + " " + std::to_string(counts[i]);
    return text + "\r\n";
}

}  // namespace glimmer::runner
