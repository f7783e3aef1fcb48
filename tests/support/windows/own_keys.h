#pragma once

#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, which it needs.
#include <tlhelp32.h>

#include <map>
#include <vector>

namespace glimmer::test {

/// Whether the process is this one or was started by it, at whatever remove.
inline bool isOurs(DWORD process) {
    std::map<DWORD, DWORD> parents;
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    for (BOOL more = Process32FirstW(all, &entry); more != FALSE; more = Process32NextW(all, &entry))
        parents[entry.th32ProcessID] = entry.th32ParentProcessID;
    CloseHandle(all);
    // Bounded: numbers are used again, so parents may go round in a circle.
    for (int generation = 0; generation < 10 && process != 0; ++generation) {
        if (process == GetCurrentProcessId()) return true;
        process = parents[process];
    }
    return false;
}

/// Sends keys to the window in front if that is one of ours; keys of a test are for nobody else.
inline void sendToOurWindows(std::vector<INPUT> keys) {
    const HWND front = GetForegroundWindow();
    DWORD process = 0;
    GetWindowThreadProcessId(front, &process);
    if (process != GetCurrentProcessId() && !isOurs(process)) {
        wchar_t title[100] = L"";
        InternalGetWindowText(front, title, 100);
        ADD_FAILURE() << "keys are not sent: in front is " << testing::PrintToString(std::wstring(title))
                      << " of process " << process;
        return;
    }
    SendInput(static_cast<UINT>(keys.size()), keys.data(), sizeof(INPUT));
}

}  // namespace glimmer::test
