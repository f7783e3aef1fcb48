#include "host/print_screen.h"

#include "common/shell_start.h"
#include "common/system_library.h"

namespace glimmer {

namespace {

/// The first version of which the setting is on unless the user has switched it off.
constexpr DWORD firstBuildThatKeepsIt = 22621;

/// The system's own number, which GetVersionEx() hides from programs that do not know the system.
DWORD buildNumber() {
    using RtlGetVersion = LONG(WINAPI*)(OSVERSIONINFOW*);
    static const auto getVersion = systemFunction<RtlGetVersion>(L"ntdll.dll", "RtlGetVersion");
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    return getVersion != nullptr && getVersion(&version) == 0 ? version.dwBuildNumber : 0;
}

}  // namespace

bool systemKeepsPrintScreen() {
    DWORD value = 0;
    DWORD size = sizeof value;
    if (RegGetValueW(HKEY_CURRENT_USER, L"Control Panel\\Keyboard", L"PrintScreenKeyForSnippingEnabled",
                     RRF_RT_REG_DWORD, nullptr, &value, &size) == ERROR_SUCCESS)
        return value != 0;
    return buildNumber() >= firstBuildThatKeepsIt;
}

bool isPlainPrintScreen(int32_t shortcut) { return shortcut == VK_SNAPSHOT; }

void openPrintScreenSetting() { shellStart().open("ms-settings:easeofaccess-keyboard", {}); }

}  // namespace glimmer
