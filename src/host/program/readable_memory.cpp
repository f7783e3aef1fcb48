#include "host/program/readable_memory.h"

#include <windows.h>

namespace glimmer {

bool isReadable(const uint8_t* data, size_t count) {
    constexpr DWORD readable = PAGE_READONLY | PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READ |
                               PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    auto at = reinterpret_cast<uintptr_t>(data);
    if (data == nullptr || count > UINTPTR_MAX - at) return false;
    const uintptr_t end = at + count;
    while (at < end) {
        MEMORY_BASIC_INFORMATION region = {};
        if (VirtualQuery(reinterpret_cast<const void*>(at), &region, sizeof region) == 0) return false;
        if (region.State != MEM_COMMIT || (region.Protect & readable) == 0 || (region.Protect & PAGE_GUARD) != 0) {
            return false;
        }
        const uintptr_t regionEnd = reinterpret_cast<uintptr_t>(region.BaseAddress) + region.RegionSize;
        if (regionEnd <= at) return true;  // the region reaches the end of the address space
        at = regionEnd;
    }
    return true;
}

}  // namespace glimmer
