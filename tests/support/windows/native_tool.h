#pragma once

#include <filesystem>
#include <string>

namespace glimmer::test {

struct ToolResult {
    int code = -1;
    std::string output;  ///< both streams
};

/// Runs a command line of the shell of the system below Wine, where the independent readers of our files live, and
/// waits for its end. Name files in it with quotedForTool().
ToolResult runTool(const std::string& command);
/// A Windows path as that shell takes it.
std::string quotedForTool(const std::filesystem::path& path);

}  // namespace glimmer::test
