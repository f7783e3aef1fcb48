// The library's two exports. library.def gives them their names.

#include <windows.h>

#include "common/library_module.h"
#include "host/entry/entry_points.h"
#include "host/entry/standalone.h"

extern "C" {

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    // Nothing else belongs here. Word of threads that come and go stays on: the run-time library that is linked in
    // frees what it keeps for each thread when that one ends.
    if (reason == DLL_PROCESS_ATTACH) glimmer::setLibraryModule(module);
    return TRUE;
}

int32_t GLIMMERPAD_CALL initLibrary(GlimmerpadInterface* record, uint32_t size) {
    return glimmer::fillInterface(record, size) ? 1 : 0;
}

void GLIMMERPAD_CALL runZKApplication() { glimmer::runStandalone(); }
}
