#include "host/program/miscutils.h"

#include <windows.h>
// After windows.h, which it needs.
#include <shlobj.h>

#include <io.h>

#include <cstdio>

#include "common/bitmap.h"
#include "common/debugger.h"
#include "common/library_module.h"
#include "common/section_memory.h"
#include "common/system_folders.h"
#include "common/wide_text.h"
#include "common/windows_files.h"
#include "host/program/start_rules.h"
#include "settings/cached_mem_ini_file.h"
#include "settings/debug_log.h"
#include "settings/message_box.h"
#include "settings/settings_path.h"
#include "settings/system_text.h"
#include "upload/http/http11_switches.h"

namespace glimmer {

namespace {

/// Whether a file that was opened is a copy of the user's own: for programs without a manifest (some hosts) the system
/// lets writing below Program Files appear to succeed and puts the file into a folder of this name.
bool isVirtualCopy(std::FILE* file) {
    constexpr DWORD longestPath = 32768;
    std::wstring path(longestPath, L'\0');
    HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));
    path.resize(GetFinalPathNameByHandleW(handle, path.data(), longestPath, FILE_NAME_NORMALIZED));
    return path.find(L"\\AppData\\Local\\VirtualStore\\") != std::wstring::npos;
}

/// Whether a file can be written there. Deliberately tried by opening it for appending, which leaves an empty file
/// where there was none.
bool canAppend(const std::string& path) {
    std::FILE* file = _wfopen(toWide(path).c_str(), L"at");
    if (file == nullptr) return false;
    const bool there = !isVirtualCopy(file);
    std::fclose(file);
    return there;
}

/// The user's application data, or "tmp" beside the running program where the shell does not know it.
std::string applicationData() {
    const std::filesystem::path folder = systemFolder(SystemFolder::RoamingData);
    if (!folder.empty()) return fromWide(folder.wstring()) + "\\";
    return folderOf(moduleFile(nullptr)) + "tmp\\";
}

std::string userFolder(std::string_view name) {
    const std::string folder = applicationData() + std::string(name);
    SHCreateDirectoryExW(nullptr, toWide(folder).c_str(), nullptr);
    return folder + "\\";
}

}  // namespace

void connectSystem() {
    connectDebugger();
    connectDebugLog();
    setMessageBoxes(&systemMessageBoxes());
    setSettingsFailureHandler(showError);
    setPixelAllocator(sectionPixelMemory);
    connectFiles();
    useSystemCodePage();
    restoreHttp11Switches();
}

std::string chooseSettingsPath(HostKind kind) {
    const SettingsPlace place = settingsPlace(kind);
    const std::string file(place.fileName);
    switch (place.where) {
        case SettingsPlace::Where::LibraryFolderIfWritable: {
            std::string path = libraryFolder() + file;
            return canAppend(path) ? path : userFolder(place.userFolder) + file;
        }
        case SettingsPlace::Where::UserFolder:
            return userFolder(place.userFolder) + file;
        case SettingsPlace::Where::ProfileFolder:
            return profileFolder(libraryFolder()) + file;
        case SettingsPlace::Where::LibraryFolder:
            break;
    }
    return libraryFolder() + file;
}

void setHost(HostKind kind) {
    setHostKind(kind);
    setSettingsPath(chooseSettingsPath(kind));
}

void* MapSharedView(const wchar_t* fileName, const wchar_t* mappingName, uint32_t size, bool create) {
    HANDLE file = INVALID_HANDLE_VALUE;  // the paging file
    if (fileName != nullptr) {
        file = CreateFileW(fileName, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                           OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE) return nullptr;
    }
    HANDLE mapping = create ? CreateFileMappingW(file, nullptr, PAGE_READWRITE, 0, size, mappingName)
                            : OpenFileMappingW(FILE_MAP_READ | FILE_MAP_WRITE, FALSE, mappingName);
    if (mapping == nullptr) return nullptr;  // the file stays open, as documented
    if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
    void* view = MapViewOfFile(mapping, FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, 0);
    // The name lives as long as its maker's handle. One that was only opened would keep it alive, and pile up.
    if (!create) CloseHandle(mapping);
    return view;
}

}  // namespace glimmer
