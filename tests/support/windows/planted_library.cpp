// A library that somebody planted beside a program under the name of one of the system's: it leaves a file that says
// that it was loaded.

#include <windows.h>

#include <array>
#include <string>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason != DLL_PROCESS_ATTACH) return TRUE;
    std::array<wchar_t, MAX_PATH> path{};
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    const std::wstring note = std::wstring(path.data(), length) + L".loaded";
    CloseHandle(CreateFileW(note.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    return TRUE;
}
