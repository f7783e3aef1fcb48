#include "capture/screen_access.h"

#include <windows.h>
// After windows.h, which it needs.
#include <wtsapi32.h>

#include <array>

#include "common/system_library.h"

namespace glimmer {

namespace {

bool sessionDisconnected() {
    static const auto ask =
        systemFunction<decltype(&WTSQuerySessionInformationW)>(L"wtsapi32.dll", "WTSQuerySessionInformationW");
    static const auto release = systemFunction<decltype(&WTSFreeMemory)>(L"wtsapi32.dll", "WTSFreeMemory");
    if (ask == nullptr || release == nullptr) return false;
    wchar_t* answer = nullptr;
    DWORD bytes = 0;
    if (ask(WTS_CURRENT_SERVER_HANDLE, WTS_CURRENT_SESSION, WTSConnectState, &answer, &bytes) == FALSE) return false;
    const bool disconnected = answer != nullptr && bytes >= sizeof(WTS_CONNECTSTATE_CLASS) &&
                              *reinterpret_cast<const WTS_CONNECTSTATE_CLASS*>(answer) == WTSDisconnected;
    release(answer);
    return disconnected;
}

std::wstring nameOf(HDESK desktop) {
    std::array<wchar_t, 64> name{};
    DWORD bytes = 0;
    if (GetUserObjectInformationW(desktop, UOI_NAME, name.data(), sizeof name, &bytes) == FALSE) return {};
    return name.data();
}

/// Whether the monitor and the keyboard belong to another desktop than this thread's.
bool otherDesktopShown() {
    const HDESK shown = OpenInputDesktop(0, FALSE, DESKTOP_READOBJECTS);
    if (shown == nullptr) return GetLastError() == ERROR_ACCESS_DENIED;
    const std::wstring name = nameOf(shown);
    CloseDesktop(shown);
    return !name.empty() && name != nameOf(GetThreadDesktop(GetCurrentThreadId()));
}

}  // namespace

std::string whyScreenIsDark() {
    if (sessionDisconnected())
        return "The remote session is disconnected, so there is no screen to take a picture of. Connect to it and try "
               "again.";
    if (otherDesktopShown())
        return "Windows is locked or waits for a permission. Until then no picture of the screen can be taken.";
    return {};
}

}  // namespace glimmer
