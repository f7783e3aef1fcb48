#pragma once

#include <windows.h>

#include "common/file_operations.h"

namespace glimmer {

/// The system calls that give a file its name, so that a test can let them fail in each documented way.
struct PlacingCalls {
    decltype(&ReplaceFileW) replace = ReplaceFileW;
    decltype(&MoveFileExW) move = MoveFileExW;
};

/// Gives `file` the name of `target`, over a file that has it, which hands on its rights, attributes, streams and
/// creation time where the file system can. Where that call gives up half-way the exchange is completed or taken back:
/// at every moment the former content is in the folder, under its name or at formerPath(); when neither works: HalfWay.
FileTrouble replaceInheriting(const std::filesystem::path& file, const std::filesystem::path& target,
                              const PlacingCalls& calls = {});

/// What the error of a call on a file means.
FileTrouble troubleOf(DWORD error);

/// Files are written with Windows' own calls from now on, and reasons name the program that is in the way.
void connectFiles();

}  // namespace glimmer
