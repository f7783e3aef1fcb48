#include "host/single_instance.h"

#include <windows.h>
// After windows.h, which it needs.
#include <psapi.h>

#include <array>
#include <cstring>
#include <string_view>

#include "common/wide_text.h"
#include "host/miscutils.h"

namespace glimmer {

namespace {

constexpr wchar_t mutexName[] = L"ZK2_APPLICATION_STARTED";
constexpr wchar_t mappingName[] = L"ZK_SHARED_MEM";
constexpr size_t mostProcesses = 1024;

/// Bytes of a mapped view, whole pages.
size_t viewSize(const void* view) {
    MEMORY_BASIC_INFORMATION region = {};
    return VirtualQuery(view, &region, sizeof region) != 0 ? region.RegionSize : 0;
}

/// Base name of a process's first module, its program; empty when it cannot be asked.
std::wstring programName(DWORD process) {
    const HANDLE handle = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, process);
    if (handle == nullptr) return {};
    std::array<wchar_t, MAX_PATH> name = {};
    std::array<HMODULE, 1> module = {};
    DWORD needed = 0;
    DWORD length = 0;
    if (EnumProcessModules(handle, module.data(), sizeof module, &needed) != 0) {
        length = GetModuleBaseNameW(handle, module[0], name.data(), static_cast<DWORD>(name.size()));
    }
    CloseHandle(handle);
    return {name.data(), length};
}

}  // namespace

bool anotherInstanceRuns() { return OpenMutexW(MUTEX_ALL_ACCESS, FALSE, mutexName) != nullptr; }

void claimInstance() { CreateMutexW(nullptr, TRUE, mutexName); }

uint32_t terminateMessage() {
    static const UINT message = RegisterWindowMessageW(L"ZK2_APPLICATION_TERMINATE");
    return message;
}

uint32_t restoreMessage() {
    static const UINT message = RegisterWindowMessageW(L"ZK2_APPLICATION_RESTORE");
    return message;
}

void sendTerminate() { SendMessageW(HWND_BROADCAST, terminateMessage(), 0, 0); }

void postRestore() { PostMessageW(HWND_BROADCAST, restoreMessage(), 0, 0); }

void handOver(const std::string& text) {
    const std::wstring units = toWide(text);
    const size_t bytes = (units.size() + 1) * sizeof(wchar_t);
    // The mapping and the view stay open on purpose: they end with the process.
    void* view = MapSharedView(nullptr, mappingName, static_cast<uint32_t>(bytes), true);
    // A mapping that is there already keeps its size.
    if (view == nullptr || viewSize(view) < bytes) return;
    std::memset(view, 0, viewSize(view));
    std::memcpy(view, units.data(), units.size() * sizeof(wchar_t));
}

std::optional<std::string> takeHandedOver() {
    auto* view = static_cast<wchar_t*>(MapSharedView(nullptr, mappingName, 0, false));
    if (view == nullptr) return std::nullopt;
    // The text ends inside the view, whoever wrote it.
    std::string text = fromWide(view, viewSize(view) / sizeof(wchar_t));
    *view = L'\0';
    UnmapViewOfFile(view);
    if (text.empty()) return std::nullopt;
    return text;
}

void allowFirstToTakeForeground() {
    std::array<DWORD, mostProcesses> processes = {};
    DWORD bytes = 0;
    if (EnumProcesses(processes.data(), sizeof processes, &bytes) == 0) return;
    for (size_t i = 0; i < bytes / sizeof(DWORD); ++i) {
        if (processes[i] == 0 || programName(processes[i]) != L"glimmerpad.exe") continue;
        AllowSetForegroundWindow(processes[i]);
        return;
    }
}

}  // namespace glimmer
