#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

// run_tests.exe runs the test programs of the package on whatever Windows it stands on, the same way everywhere.

namespace glimmer::runner {

/// A line of order.txt: NAME SECONDS PROGRAM ARGUMENT... A program without arguments is a test.
struct Program {
    std::wstring name;
    unsigned seconds = 0;  ///< longer than that none may take
    std::wstring program;
    std::wstring arguments;
};

enum class Outcome { Pass, Fail, Skip, TimeOut };

struct Result {
    std::wstring name;
    Outcome outcome = Outcome::Fail;
    std::string details;  ///< "12 passed, 1 skipped", "ended with code 3"
    double seconds = 0;
};

/// The programs to run; with names only those. Empty when the file cannot be read.
std::vector<Program> readOrder(const std::filesystem::path& file, const std::vector<std::wstring>& names);

/// Runs the program in the package's folder, with its output in results\NAME.log and googletest's report in
/// results\NAME.xml. One that takes too long is photographed with the screen and ended, with all that it started.
Result run(const Program& program, const std::filesystem::path& folder);

/// One line a program, and the sum.
std::string table(const std::vector<Result>& results);

/// Takes the mark of a download off every file, which would have the system ask about each program.
void unblock(const std::filesystem::path& folder);

/// Everything in the folder, but not folders named "temp" and "user", as a zip file.
bool zipFolder(const std::filesystem::path& folder, const std::filesystem::path& file);

/// What stands on the screen, as a PNG file.
bool photographScreen(const std::filesystem::path& file);

}  // namespace glimmer::runner
