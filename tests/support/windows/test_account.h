#pragma once

#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

// Whose machine the tests run on. On a person's own account they write to folders of their own, change nothing that all
// users share, and type into nobody else's windows.

namespace glimmer::test {

/// The folder above that of the running program, where the programs' folder "bin" lies as well.
inline std::filesystem::path buildFolder() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path().parent_path();
}

/// Where test programs may leave something to be looked at.
inline std::filesystem::path resultsFolder() { return buildFolder() / "results"; }

/// What stands for the user's own folder in this process and in those that it starts.
inline std::filesystem::path userFolders() {
    wchar_t folder[MAX_PATH] = L"";
    GetEnvironmentVariableW(L"GLIMMERPAD_FOLDERS", folder, MAX_PATH);
    return folder;
}

/// Gives this process, and those that it starts, empty folders instead of the user's own. For the first lines of a main
/// function; a process that was given folders keeps them.
inline void useOwnFolders() {
    if (!userFolders().empty()) return;
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const std::filesystem::path folder = resultsFolder() / "user" / std::filesystem::path(program).stem();
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    std::filesystem::create_directories(folder, ignored);
    SetEnvironmentVariableW(L"GLIMMERPAD_FOLDERS", folder.c_str());
}

/// Whether the machine is there for tests: a Wine prefix or Windows' sandbox, unless the variable
/// GLIMMERPAD_TEST_MACHINE says otherwise (1 or 0). Only there may a test change what all users share.
inline bool isTestMachine() {
    if (const char* said = std::getenv("GLIMMERPAD_TEST_MACHINE"); said != nullptr) return *said == '1';
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace glimmer::test
