#include "settings/dialog/run_at_startup.h"

#include <windows.h>

#include <array>

#include "common/command_line.h"
#include "common/text.h"

namespace glimmer {

namespace {

constexpr const wchar_t* runKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr const wchar_t* approvedKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StartupApproved\\Run";
constexpr const wchar_t* valueName = L"Glimmerpad";

/// Whether the user has switched the entry off in the system's own list of programs at the start. The first byte of
/// what that keeps is odd then.
bool switchedOff() {
    std::array<BYTE, 64> state{};
    DWORD size = sizeof state;
    return RegGetValueW(HKEY_CURRENT_USER, approvedKey, valueName, RRF_RT_REG_BINARY, nullptr, state.data(), &size) ==
               ERROR_SUCCESS &&
           size > 0 && (state[0] & 1U) != 0;
}

}  // namespace

bool runsAtStartup() {
    return RegGetValueW(HKEY_CURRENT_USER, runKey, valueName, RRF_RT_REG_SZ, nullptr, nullptr, nullptr) ==
               ERROR_SUCCESS &&
           !switchedOff();
}

void renewRunAtStartup(const std::string& program) {
    const std::u16string former = toUtf16(quotedArgument(program));
    std::u16string data(former.size() + 1, u'\0');
    auto size = static_cast<DWORD>(data.size() * sizeof(char16_t));
    if (RegGetValueW(HKEY_CURRENT_USER, runKey, valueName, RRF_RT_REG_SZ, nullptr, data.data(), &size) ==
            ERROR_SUCCESS &&
        data.c_str() == former && !switchedOff())
        static_cast<void>(setRunAtStartup(true, program));
}

Status setRunAtStartup(bool on, const std::string& program) {
    const Failure failure{"The program's entry for the system's start cannot be changed."};
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, runKey, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr) !=
        ERROR_SUCCESS)
        return failure;
    LSTATUS status = ERROR_SUCCESS;
    if (on) {
        // Nobody wants a window at each sign-in.
        const std::u16string command = toUtf16(quotedArgument(program) + " -TRAY");
        const size_t bytes = (command.size() + 1) * sizeof(char16_t);
        status = RegSetValueExW(key, valueName, 0, REG_SZ, reinterpret_cast<const BYTE*>(command.c_str()),
                                static_cast<DWORD>(bytes));
    } else {
        status = RegDeleteValueW(key, valueName);
        if (status == ERROR_FILE_NOT_FOUND) status = ERROR_SUCCESS;
    }
    RegCloseKey(key);
    // Whatever was decided about an entry before holds no longer.
    if (status == ERROR_SUCCESS) RegDeleteKeyValueW(HKEY_CURRENT_USER, approvedKey, valueName);
    return status == ERROR_SUCCESS ? Status() : Status(failure);
}

}  // namespace glimmer
