#include "common/system_version.h"

#include "common/system_library.h"

namespace glimmer {

uint32_t systemBuild() {
    static const uint32_t build = [] {
        const auto version = systemFunction<LONG(WINAPI*)(OSVERSIONINFOW*)>(L"ntdll.dll", "RtlGetVersion");
        OSVERSIONINFOW info{};
        info.dwOSVersionInfoSize = sizeof info;
        return version != nullptr && version(&info) == 0 ? info.dwBuildNumber : 0;
    }();
    return build;
}

}  // namespace glimmer
