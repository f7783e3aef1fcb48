#include <windows.h>
// After windows.h, which it needs.
#include <winternl.h>

#include "common/system_library.h"
#include "facts.h"

namespace glimmer::facts {

namespace {

std::string registryNumber(HKEY root, const wchar_t* key, const wchar_t* name) {
    DWORD value = 0;
    DWORD size = sizeof value;
    // The system's own part of the registry, also for a 32-bit program.
    HKEY opened = nullptr;
    if (RegOpenKeyExW(root, key, 0, KEY_READ | KEY_WOW64_64KEY, &opened) != ERROR_SUCCESS) return "not set";
    const LONG found = RegGetValueW(opened, nullptr, name, RRF_RT_REG_DWORD, nullptr, &value, &size);
    RegCloseKey(opened);
    return found == ERROR_SUCCESS ? std::to_string(value) : "not set";
}

std::string version() {
    RTL_OSVERSIONINFOW info = {};
    info.dwOSVersionInfoSize = sizeof info;
    const auto get = systemFunction<LONG(WINAPI*)(RTL_OSVERSIONINFOW*)>(L"ntdll.dll", "RtlGetVersion");
    if (get == nullptr || get(&info) != 0) return "unknown";
    return std::to_string(info.dwMajorVersion) + "." + std::to_string(info.dwMinorVersion) + "." +
           std::to_string(info.dwBuildNumber);
}

std::string wineVersion() {
    const auto get = systemFunction<const char*(CDECL*)()>(L"ntdll.dll", "wine_get_version");
    return get != nullptr ? get() : "none";
}

BOOL CALLBACK addMonitor(HMONITOR monitor, HDC, LPRECT place, LPARAM text) {
    using GetDpi = HRESULT(WINAPI*)(HMONITOR, int, UINT*, UINT*);
    UINT x = 0;
    UINT y = 0;
    const auto getDpi = systemFunction<GetDpi>(L"shcore.dll", "GetDpiForMonitor");
    if (getDpi != nullptr) getDpi(monitor, 0, &x, &y);
    auto& all = *reinterpret_cast<std::string*>(text);
    if (!all.empty()) all += ", ";
    all += std::to_string(place->right - place->left) + "x" + std::to_string(place->bottom - place->top) + " at " +
           std::to_string(place->left) + "," + std::to_string(place->top) + " with " + std::to_string(x) + " dpi";
    return TRUE;
}

std::string elevation() {
    HANDLE token = nullptr;
    TOKEN_ELEVATION state = {};
    DWORD size = sizeof state;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == FALSE) return "unknown";
    const BOOL told = GetTokenInformation(token, TokenElevation, &state, size, &size);
    CloseHandle(token);
    if (told == FALSE) return "unknown";
    return state.TokenIsElevated != 0 ? "yes" : "no";
}

std::string highContrast() {
    HIGHCONTRASTW state = {};
    state.cbSize = sizeof state;
    SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof state, &state, 0);
    return (state.dwFlags & HCF_HIGHCONTRASTON) != 0 ? "yes" : "no";
}

}  // namespace

void askSystem(Report& report) {
    report.set("system.version", version());
    report.set("system.wine", wineVersion());
    std::string monitors;
    EnumDisplayMonitors(nullptr, nullptr, addMonitor, reinterpret_cast<LPARAM>(&monitors));
    report.set("system.monitors", monitors);
    const auto isThemed = systemFunction<BOOL(WINAPI*)()>(L"uxtheme.dll", "IsThemeActive");
    report.set("system.themed", isThemed != nullptr && isThemed() != FALSE ? "yes" : "no");
    report.set("system.high-contrast", highContrast());
    report.set("system.light-programs",
               registryNumber(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
                              L"AppsUseLightTheme"));
    wchar_t language[LOCALE_NAME_MAX_LENGTH] = L"";
    GetUserDefaultLocaleName(language, LOCALE_NAME_MAX_LENGTH);
    report.set("system.language", std::filesystem::path(language).string());
    report.set("system.code-pages", std::to_string(GetACP()) + " and " + std::to_string(GetOEMCP()));
    report.set("system.elevated", elevation());
    // 0 off, 1 on, 2 it is still making up its mind.
    report.set("system.smart-app-control",
               registryNumber(HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\CI\\Policy",
                              L"VerifiedAndReputablePolicyState"));
}

}  // namespace glimmer::facts
