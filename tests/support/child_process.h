#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace glimmer::test {

/// A program that is started, and killed at the latest when the object goes.
class ChildProcess {
public:
    ChildProcess(const std::filesystem::path& program, const std::vector<std::filesystem::path>& arguments);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ChildProcess(ChildProcess&&) = delete;
    ChildProcess& operator=(ChildProcess&&) = delete;

    [[nodiscard]] bool running() const;
    /// Ends it at once, without a chance to clean up, and waits until it is gone.
    void kill();

private:
    intptr_t process_ = 0;
};

/// Where the programs of the tests lie.
std::filesystem::path testProgram(const std::string& name);

}  // namespace glimmer::test
