#pragma once

#include <windows.h>
// After windows.h, which it needs.
#include <restartmanager.h>

#include <filesystem>
#include <string>
#include <vector>

namespace glimmer {

/// The system's Restart Manager, which knows who has a file open. All null where it is missing.
struct RestartManager {
    decltype(&RmStartSession) start = nullptr;
    decltype(&RmRegisterResources) add = nullptr;
    decltype(&RmGetList) list = nullptr;
    decltype(&RmEndSession) end = nullptr;
};
const RestartManager& restartManager();

/// A program that has a file open.
struct FileHolder {
    DWORD process = 0;
    std::string name;  ///< as a person knows it ("Photos"); never empty
};

/// Who has the file open, as far as the system can tell: programs of other users and files on shares stay unknown.
/// Takes a tenth of a second, so only when there is something to say.
std::vector<FileHolder> holdersOf(const std::filesystem::path& path, const RestartManager& manager = restartManager());

/// "The file is open in Photos." Nothing when nobody is known.
std::string openIn(const std::vector<FileHolder>& holders);

}  // namespace glimmer
