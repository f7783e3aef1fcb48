#include "common/system_folders.h"

#include <windows.h>
// After windows.h, which it needs.
#include <shlobj.h>

#include <string>
#include <system_error>

namespace glimmer {

namespace {

struct Row {
    SystemFolder folder;
    int id;
    const wchar_t* replacement;  // its name below GLIMMERPAD_FOLDERS
};

constexpr Row rows[] = {
    {SystemFolder::RoamingData, CSIDL_APPDATA, L"AppData\\Roaming"},
    {SystemFolder::LocalData, CSIDL_LOCAL_APPDATA, L"AppData\\Local"},
    {SystemFolder::Pictures, CSIDL_MYPICTURES, L"Pictures"},
    {SystemFolder::Documents, CSIDL_PERSONAL, L"Documents"},
    {SystemFolder::Profile, CSIDL_PROFILE, L""},
};

/// What replaces the user's own folder; empty in a person's own session.
std::filesystem::path replacedProfile() {
    constexpr const wchar_t* variable = L"GLIMMERPAD_FOLDERS";
    std::wstring text(GetEnvironmentVariableW(variable, nullptr, 0), L'\0');
    if (text.empty()) return {};
    text.resize(GetEnvironmentVariableW(variable, text.data(), static_cast<DWORD>(text.size())));
    return text;
}

}  // namespace

std::filesystem::path systemFolder(SystemFolder folder) {
    for (const Row& row : rows) {
        if (row.folder != folder) continue;
        if (std::filesystem::path replaced = replacedProfile(); !replaced.empty()) {
            replaced /= row.replacement;
            std::error_code error;
            std::filesystem::create_directories(replaced, error);
            return error ? std::filesystem::path() : replaced;
        }
        wchar_t path[MAX_PATH] = {};
        const int id = row.id | CSIDL_FLAG_CREATE;
        if (SHGetFolderPathW(nullptr, id, nullptr, SHGFP_TYPE_CURRENT, path) == S_OK) return path;
    }
    return {};
}

}  // namespace glimmer
