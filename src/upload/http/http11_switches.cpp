#include "upload/http/http11_switches.h"

// clang-format off
#include <windows.h>
#include <sddl.h>
// clang-format on

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace glimmer {

namespace {

constexpr const wchar_t* systemKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
/// The note: a value of the same name for each switch that has to come back.
constexpr const wchar_t* noteKey = L"Software\\GlimmerpadSwitchedOff";
constexpr const wchar_t* ordinary = L"EnableHttp1_1";
constexpr const wchar_t* forProxy = L"ProxyHttp1.1";
constexpr DWORD patience = 5000;

bool isOn(const wchar_t* key, const wchar_t* name) {
    DWORD value = 0;
    DWORD size = sizeof value;
    return RegGetValueW(HKEY_CURRENT_USER, key, name, RRF_RT_REG_DWORD, nullptr, &value, &size) == ERROR_SUCCESS &&
           value != 0;
}

bool write(const wchar_t* key, const wchar_t* name, DWORD value) {
    return RegSetKeyValueW(HKEY_CURRENT_USER, key, name, REG_DWORD, &value, sizeof value) == ERROR_SUCCESS;
}

/// What the note says. The note goes last.
void putBack() {
    for (const wchar_t* name : {ordinary, forProxy})
        if (isOn(noteKey, name) && write(systemKey, name, 1)) RegDeleteKeyValueW(HKEY_CURRENT_USER, noteKey, name);
    RegDeleteKeyW(HKEY_CURRENT_USER, noteKey);  // fails when there is still something in it
}

bool noteIsThere() {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, noteKey, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}

/// One for each user: the settings are his in all sessions.
std::wstring lockName() {
    std::wstring name = L"Global\\Glimmerpad.SwitchedOff.";
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == FALSE) return name;
    alignas(TOKEN_USER) std::array<BYTE, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> user{};
    DWORD size = 0;
    wchar_t* sid = nullptr;
    if (GetTokenInformation(token, TokenUser, user.data(), static_cast<DWORD>(user.size()), &size) != FALSE &&
        ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid, &sid) != FALSE) {
        name += sid;
        LocalFree(sid);
    }
    CloseHandle(token);
    return name;
}

/// Null when another one has it for that long.
HANDLE takeLock(DWORD milliseconds) {
    const HANDLE lock = CreateMutexW(nullptr, FALSE, lockName().c_str());
    if (lock == nullptr) return nullptr;
    const DWORD taken = WaitForSingleObject(lock, milliseconds);
    if (taken == WAIT_OBJECT_0 || taken == WAIT_ABANDONED) return lock;
    CloseHandle(lock);
    return nullptr;
}

void giveUp(HANDLE lock) {
    ReleaseMutex(lock);
    CloseHandle(lock);
}

}  // namespace

bool Http11Switches::switchOff(bool forProxies) {
    const HANDLE lock = takeLock(patience);
    if (lock == nullptr) return false;
    if (noteIsThere()) putBack();
    std::vector<const wchar_t*> names{ordinary};
    if (forProxies) names.push_back(forProxy);
    bool changed = false;
    for (const wchar_t* name : names)
        if (isOn(systemKey, name) && write(noteKey, name, 1)) changed = write(systemKey, name, 0) || changed;
    if (changed) {
        lock_ = lock;
    } else {
        giveUp(lock);
    }
    return changed;
}

void Http11Switches::restore() {
    if (lock_ == nullptr) return;
    putBack();
    giveUp(static_cast<HANDLE>(std::exchange(lock_, nullptr)));
}

void restoreHttp11Switches() {
    if (!noteIsThere()) return;
    const HANDLE lock = takeLock(0);
    if (lock == nullptr) return;  // a process is at it, and puts them back itself
    putBack();
    giveUp(lock);
}

}  // namespace glimmer
