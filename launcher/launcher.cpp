// glimmerpad.exe: loads the library that lies beside it and runs it as a program of its own.

#include <windows.h>

#include <string>

#include "glimmerpad.h"

namespace {

constexpr DWORD longestPath = 32768;  // characters

/// What the library needs of the system comes from the system's own folder: a version.dll in the folder of downloads,
/// where this program may lie as well, is not the system's. Answers the flags with which our library is to be loaded.
DWORD searchInSystemFolderOnly() {
    HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    const auto choose = reinterpret_cast<decltype(&SetDefaultDllDirectories)>(
        reinterpret_cast<void (*)()>(GetProcAddress(kernel, "SetDefaultDllDirectories")));
    if (choose != nullptr && choose(LOAD_LIBRARY_SEARCH_SYSTEM32) != FALSE) return LOAD_LIBRARY_SEARCH_SYSTEM32;
    // A Windows 7 without its updates: the current folder, at least, is not searched.
    SetDllDirectoryW(L"");
    return 0;
}

std::wstring programPath() {
    std::wstring path(longestPath, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), longestPath));
    return path;
}

/// A path without short names ("PROGRA~1"); as it is when it cannot be asked for.
std::wstring longPath(const std::wstring& path) {
    std::wstring result(longestPath, L'\0');
    result.resize(GetLongPathNameW(path.c_str(), result.data(), longestPath));
    return result.empty() ? path : result;
}

bool liesInTemporaryFolder(const std::wstring& path) {
    std::wstring folder(MAX_PATH + 1, L'\0');
    folder.resize(GetTempPathW(MAX_PATH + 1, folder.data()));
    folder = longPath(folder);
    const std::wstring start = longPath(path).substr(0, folder.size());
    return !folder.empty() && CompareStringOrdinal(start.c_str(), -1, folder.c_str(), -1, TRUE) == CSTR_EQUAL;
}

int fail(const std::wstring& text) {
    MessageBoxW(nullptr, text.c_str(), L"Error", MB_OK | MB_ICONERROR);
    return 1;
}

/// Why the library cannot be loaded, with the system's reason.
int failToLoad(const std::wstring& program, const std::wstring& library, DWORD error) {
    // A program that is started in the window of a zip file is unpacked alone, into the folder for temporary files.
    if (GetFileAttributesW(library.c_str()) == INVALID_FILE_ATTRIBUTES && liesInTemporaryFolder(program))
        return fail(
            L"The file glimmerpad.dll is missing.\n\nExtract all files of the zip file into a folder first, and "
            L"start the program there.");
    wchar_t* reason = nullptr;
    constexpr DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    FormatMessageW(flags, nullptr, error, 0, reinterpret_cast<wchar_t*>(&reason), 0, nullptr);
    return fail(L"The file glimmerpad.dll, which belongs beside this program, cannot be loaded.\n\n" +
                std::wstring(reason != nullptr ? reason : L"") + L"(" + std::to_wstring(error) + L")");
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    const DWORD search = searchInSystemFolderOnly();
    // By its full path: a library of that name elsewhere is not ours.
    const std::wstring program = programPath();
    const std::wstring path = program.substr(0, program.find_last_of(L'\\') + 1) + L"glimmerpad.dll";
    HMODULE library = LoadLibraryExW(path.c_str(), nullptr, search);
    if (library == nullptr) return failToLoad(program, path, GetLastError());
    const auto run = reinterpret_cast<GlimmerpadRunApplication>(
        reinterpret_cast<void (*)()>(GetProcAddress(library, "runZKApplication")));
    if (run == nullptr) return fail(L"The file glimmerpad.dll beside this program is not a complete one.");
    run();
    return 0;
}
