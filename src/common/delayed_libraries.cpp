// The linker's helper loads a library at the first call of one of its functions, by its bare name and so, in a host
// that does not say otherwise, first from the folder of the host's program. It asks this hook before; the answer is a
// library of the system's own folder or none.

#include <windows.h>
// After windows.h, which it needs.
#include <delayimp.h>

#include <string>

#include "common/system_library.h"

namespace glimmer {

namespace {

FARPROC WINAPI loadFromSystem(unsigned step, DelayLoadInfo* call) {
    if (step != dliNotePreLoadLibrary) return nullptr;
    const std::string name = call->szDll;
    const HMODULE module = systemLibrary(std::wstring(name.begin(), name.end()).c_str());
    if (module == nullptr) {
        // Without an answer the helper would look for the name itself. This is what it raises when it finds nothing.
        const ULONG_PTR argument = reinterpret_cast<ULONG_PTR>(call);
        RaiseException(static_cast<DWORD>(VcppException(ERROR_SEVERITY_ERROR, ERROR_MOD_NOT_FOUND)), 0, 1, &argument);
    }
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(module));
}

}  // namespace

}  // namespace glimmer

// The name that the helper looks for; cmake/libraries.cmake sees to it that the linker takes this one.
PfnDliHook __pfnDliNotifyHook2 = glimmer::loadFromSystem;
