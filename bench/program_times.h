#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace glimmer::bench {

/// Milliseconds from a program's start to its end, and how many it had of all processors together.
struct ProcessTimes {
    double wall = 0;
    double processor = 0;  ///< 0 on Windows, where Wine gives no such figure of a program that has ended
};

/// Runs a program, by its path or found where the system looks for programs, to its end and without its output;
/// nothing when it cannot be started or fails.
std::optional<ProcessTimes> runProgram(const std::string& program, const std::vector<std::string>& arguments);

/// A program of ours that is built beside this one.
std::string ownProgram(const std::string& name);

}  // namespace glimmer::bench
