#include "common/system_library.h"

#include <array>
#include <string>

namespace glimmer {

HMODULE systemLibrary(const wchar_t* name) {
    if (HMODULE module = LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) return module;
    if (GetLastError() != ERROR_INVALID_PARAMETER) return nullptr;
    // A Windows 7 without its updates does not know that flag. A full path says the same; what the library itself
    // needs is then looked for where the system always does.
    std::array<wchar_t, MAX_PATH> folder{};
    const UINT length = GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    if (length == 0 || length >= folder.size()) return nullptr;
    return LoadLibraryExW((std::wstring(folder.data(), length) + L"\\" + name).c_str(), nullptr,
                          LOAD_WITH_ALTERED_SEARCH_PATH);
}

}  // namespace glimmer
