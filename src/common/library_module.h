#pragma once

#include <string>

namespace glimmer {

/// Module handle (HINSTANCE) of the library; of the program as long as no library said otherwise, which is so in
/// tests. Resources and the library folder are found by it.
void* libraryModule();
/// Called when the system attaches the library to the process.
void setLibraryModule(void* module);

/// Full path of a module's file (null: of the running program), UTF-8.
std::string moduleFile(void* module);
/// Folder part of a path with its closing backslash; empty when the path has none.
std::string folderOf(const std::string& path);
/// Folder of the library file, with its closing backslash.
std::string libraryFolder();

}  // namespace glimmer
