#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "support/not_copied.h"

namespace glimmer::test {

/// A program that is started, and killed at the latest when the object goes.
class ChildProcess : NotCopied {
public:
    ChildProcess(const std::filesystem::path& program, const std::vector<std::filesystem::path>& arguments);
#ifdef _WIN32
    /// With a command line as it stands, program first, in a current folder.
    ChildProcess(std::wstring commandLine, const std::filesystem::path& folder);
    [[nodiscard]] unsigned long id() const;
#endif
    ~ChildProcess();

    [[nodiscard]] bool running() const;
    /// Its exit code as soon as it has ended; nothing when it has not within that time.
    [[nodiscard]] std::optional<int> wait(unsigned milliseconds);
    /// Ends it at once, without a chance to clean up, and waits until it is gone.
    void kill();

private:
    intptr_t process_ = 0;
};

/// Where the programs of the tests lie.
std::filesystem::path testProgram(const std::string& name);

}  // namespace glimmer::test
