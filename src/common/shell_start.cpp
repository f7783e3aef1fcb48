#include "common/shell_start.h"

#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include <array>
#include <filesystem>
#include <utility>

#include "common/command_line.h"
#include "common/system_folders.h"
#include "common/wide_text.h"

namespace glimmer {

namespace {

using Folder = UINT(WINAPI*)(LPWSTR, UINT);

std::wstring folder(Folder get) {
    std::array<wchar_t, MAX_PATH> path{};
    const UINT length = get(path.data(), static_cast<UINT>(path.size()));
    return length < path.size() ? std::wstring(path.data(), length) : std::wstring();
}

bool isFile(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

/// Where a program says that it lies; empty when it does not, or not with a full path.
std::wstring registeredPath(HKEY root, const std::wstring& name) {
    const std::wstring key = L"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\" + name;
    std::array<wchar_t, MAX_PATH> path{};
    DWORD size = sizeof path;
    if (RegGetValueW(root, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, path.data(), &size) != ERROR_SUCCESS)
        return {};
    std::wstring found = path.data();
    std::erase(found, L'"');
    return found.size() > 2 && found[1] == L':' ? found : std::wstring();
}

/// The full path of a program that is given by its name alone; empty when there is none. The system looks in the
/// current folder first, and for any kind of program.
std::wstring programPath(std::wstring name) {
    if (name.find(L'.') == std::wstring::npos) name += L".exe";
    // Windows' own folder first: the other one is that of 32-bit programs here, which has an Explorer too.
    for (const Folder get : {Folder{GetWindowsDirectoryW}, Folder{GetSystemDirectoryW}}) {
        std::wstring path = folder(get) + L"\\" + name;
        if (isFile(path)) return path;
    }
    for (HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        std::wstring path = registeredPath(root, name);
        if (!path.empty() && isFile(path)) return path;
    }
    // Programs of the store have their names in a folder of the user's.
    const std::filesystem::path data = systemFolder(SystemFolder::LocalData);
    const std::wstring alias = (data / L"Microsoft" / L"WindowsApps" / name).wstring();
    return !data.empty() && isFile(alias) ? alias : std::wstring();
}

bool execute(const wchar_t* verb, const std::wstring& file, const std::wstring& arguments) {
    // What is started has no business in the folder of somebody's document either.
    const std::wstring where = folder(GetSystemDirectoryW);
    SHELLEXECUTEINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
    info.lpVerb = verb;
    info.lpFile = file.c_str();
    info.lpParameters = arguments.empty() ? nullptr : arguments.c_str();
    info.lpDirectory = where.c_str();
    info.nShow = SW_SHOWNORMAL;
    return ShellExecuteExW(&info) != FALSE;
}

class SystemShellStart : public ShellStart {
public:
    bool open(const std::string& target, const std::string& parameters) override {
        std::wstring file = toWide(target);
        if (file.find_first_of(L"\\/:") == std::wstring::npos) file = programPath(std::move(file));
        return !file.empty() && execute(L"open", file, toWide(parameters));
    }
    bool edit(const std::string& file) override { return execute(L"edit", toWide(file), {}); }
};

ShellStart* replacement = nullptr;

}  // namespace

ShellStart& shellStart() {
    static SystemShellStart start;
    if (replacement != nullptr) return *replacement;
    return start;
}

void setShellStart(ShellStart* start) { replacement = start; }

bool showInFolder(const std::string& path) { return shellStart().open("explorer", "/select," + quotedArgument(path)); }

}  // namespace glimmer
