#include "host/program/print_screen.h"

#include <windows.h>

#include "common/shell_start.h"
#include "common/system_version.h"

namespace glimmer {

namespace {

/// The first version of which the setting is on unless the user has switched it off.
constexpr uint32_t firstBuildThatKeepsIt = 22621;

}  // namespace

bool systemKeepsPrintScreen() {
    DWORD value = 0;
    DWORD size = sizeof value;
    if (RegGetValueW(HKEY_CURRENT_USER, L"Control Panel\\Keyboard", L"PrintScreenKeyForSnippingEnabled",
                     RRF_RT_REG_DWORD, nullptr, &value, &size) == ERROR_SUCCESS)
        return value != 0;
    return systemBuild() >= firstBuildThatKeepsIt;
}

bool isPlainPrintScreen(int32_t shortcut) { return shortcut == VK_SNAPSHOT; }

void openPrintScreenSetting() { shellStart().open("ms-settings:easeofaccess-keyboard", {}); }

}  // namespace glimmer
