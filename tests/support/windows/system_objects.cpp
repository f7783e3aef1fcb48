#include "support/windows/system_objects.h"

#include <windows.h>
// After windows.h, which it needs.
#include <psapi.h>

namespace glimmer::test {

namespace {

// Wine does not tell how many handles and objects a process has, so they are counted one by one. It takes a handle of
// a window or a drawing object whose upper half is 0 for the one with that place in the table; Windows refuses such
// handles, and tells the number instead.

uint32_t countedHandles() {
    constexpr uintptr_t places = 0x10000;
    uint32_t count = 0;
    for (uintptr_t handle = 4; handle < places; handle += 4) {
        DWORD flags = 0;
        if (GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags) != FALSE) ++count;
    }
    return count;
}

uint32_t countedGdiObjects() {
    constexpr uintptr_t places = 0x10000;
    uint32_t count = 0;
    for (uintptr_t place = 1; place < places; ++place)
        if (GetObjectType(reinterpret_cast<HGDIOBJ>(place)) != 0) ++count;
    return count;
}

uint32_t countedWindowsAndMenus() {
    constexpr uintptr_t places = 0x10000;
    uint32_t count = 0;
    for (uintptr_t place = 0x20; place < places; place += 2) {  // handles of windows and menus are even
        DWORD process = 0;
        GetWindowThreadProcessId(reinterpret_cast<HWND>(place), &process);
        if (process == GetCurrentProcessId() || IsMenu(reinterpret_cast<HMENU>(place)) != FALSE) ++count;
    }
    return count;
}

}  // namespace

SystemObjects countObjects() {
    const HANDLE process = GetCurrentProcess();
    DWORD handles = 0;
    GetProcessHandleCount(process, &handles);
    PROCESS_MEMORY_COUNTERS memory{};
    memory.cb = sizeof memory;
    GetProcessMemoryInfo(process, &memory, sizeof memory);
    if (handles == 0) handles = countedHandles();
    uint32_t gdi = GetGuiResources(process, GR_GDIOBJECTS);
    uint32_t user = GetGuiResources(process, GR_USEROBJECTS);
    if (gdi == 0) gdi = countedGdiObjects();
    if (user == 0) user = countedWindowsAndMenus();
    return {handles, gdi, user, memory.PagefileUsage};
}

std::ostream& operator<<(std::ostream& out, const SystemObjects& objects) {
    return out << objects.handles << " handles, " << objects.gdi << " GDI objects, " << objects.user
               << " user objects, " << objects.privateBytes / 1024 << " KiB";
}

}  // namespace glimmer::test
