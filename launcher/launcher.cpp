// glimmerpad.exe: loads the library that lies beside it and runs it as a program of its own.

#include <windows.h>

#include <string>

#include "glimmerpad.h"

namespace {

std::wstring besideThisProgram(const wchar_t* name) {
    constexpr DWORD longestPath = 32768;
    std::wstring path(longestPath, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), longestPath));
    return path.substr(0, path.find_last_of(L'\\') + 1) + name;
}

int fail(const wchar_t* text) {
    MessageBoxW(nullptr, text, L"Error", MB_OK | MB_ICONERROR);
    return 1;
}

/// A start that only handed a file to a running instance holds that file's name in its own memory. It stays until
/// the name was fetched, but not long, so that an instance that is busy right now still finds it.
void lingerAfterHandOver() {
    constexpr DWORD step = 10;  // milliseconds
    constexpr DWORD longest = 1000;
    HANDLE mapping = OpenFileMappingW(FILE_MAP_READ, FALSE, L"ZK_SHARED_MEM");
    if (mapping == nullptr) return;
    const auto* text = static_cast<const volatile wchar_t*>(MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0));
    if (text == nullptr) return;
    for (DWORD waited = 0; *text != L'\0' && waited < longest; waited += step) Sleep(step);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    // By its full path: a library of that name elsewhere on the search path is not ours.
    HMODULE library = LoadLibraryW(besideThisProgram(L"glimmerpad.dll").c_str());
    if (library == nullptr)
        return fail(L"The file glimmerpad.dll, which belongs beside this program, cannot be loaded.");
    const auto run = reinterpret_cast<GlimmerpadRunApplication>(
        reinterpret_cast<void (*)()>(GetProcAddress(library, "runZKApplication")));
    if (run == nullptr) return fail(L"The file glimmerpad.dll beside this program is not a complete one.");
    run();
    lingerAfterHandOver();
    return 0;
}
