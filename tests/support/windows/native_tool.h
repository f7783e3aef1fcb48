#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace glimmer::test {

/// Whether runTool() runs anything: on Windows there is none of these readers.
bool toolsAreHere();

struct ToolResult {
    int code = -1;
    std::string output;  ///< both streams
};

/// Runs a command line of the shell of the system below Wine, where the independent readers of our files live, and
/// waits for its end. Name files in it with quotedForTool(). Only where toolsAreHere().
ToolResult runTool(const std::string& command);

/// Fails unless the command succeeds and says all of that. Without the tools its files and the command line are kept
/// below the results, in exchange/NAME-OF-THE-TEST, for `./dev exchange` to judge elsewhere.
void expectTool(const std::string& command, const std::vector<std::string>& says = {});

/// A Windows path as that shell takes it.
std::string quotedForTool(const std::filesystem::path& path);

}  // namespace glimmer::test
