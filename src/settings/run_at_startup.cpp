#include "settings/run_at_startup.h"

#include <windows.h>

#include "common/text.h"

namespace glimmer {

namespace {

constexpr const wchar_t* runKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr const wchar_t* valueName = L"Glimmerpad";

}  // namespace

bool runsAtStartup() {
    return RegGetValueW(HKEY_CURRENT_USER, runKey, valueName, RRF_RT_REG_SZ, nullptr, nullptr, nullptr) ==
           ERROR_SUCCESS;
}

Status setRunAtStartup(bool on, const std::string& program) {
    const Failure failure{"The program's entry for the system's start cannot be changed."};
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, runKey, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr) !=
        ERROR_SUCCESS)
        return failure;
    LSTATUS status = ERROR_SUCCESS;
    if (on) {
        // Quoted: the path may have blanks.
        const std::u16string command = toUtf16("\"" + program + "\"");
        const size_t bytes = (command.size() + 1) * sizeof(char16_t);
        status = RegSetValueExW(key, valueName, 0, REG_SZ, reinterpret_cast<const BYTE*>(command.c_str()),
                                static_cast<DWORD>(bytes));
    } else {
        status = RegDeleteValueW(key, valueName);
        if (status == ERROR_FILE_NOT_FOUND) status = ERROR_SUCCESS;
    }
    RegCloseKey(key);
    return status == ERROR_SUCCESS ? Status() : Status(failure);
}

}  // namespace glimmer
