#include "common/library_module.h"

#include <windows.h>

#include <atomic>

#include "common/wide_text.h"

namespace glimmer {

namespace {
std::atomic<void*> attachedModule = nullptr;
}

void* libraryModule() {
    void* module = attachedModule.load();
    return module != nullptr ? module : GetModuleHandleW(nullptr);
}

void setLibraryModule(void* module) { attachedModule.exchange(module); }

std::string moduleFile(void* module) {
    // No path is longer than this in any version of the system.
    constexpr DWORD longestPath = 32768;
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const auto room = static_cast<DWORD>(path.size());
        const DWORD length = GetModuleFileNameW(static_cast<HMODULE>(module), path.data(), room);
        if (length < room || room >= longestPath) return fromWide(std::wstring_view(path).substr(0, length));
        path.resize(longestPath);
    }
}

std::string folderOf(const std::string& path) {
    const size_t at = path.find_last_of("\\/");
    return at == std::string::npos ? std::string() : path.substr(0, at + 1);
}

std::string libraryFolder() { return folderOf(moduleFile(libraryModule())); }

}  // namespace glimmer
