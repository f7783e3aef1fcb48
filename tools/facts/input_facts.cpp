#include <cstdio>
#include <map>

#include "facts.h"

namespace glimmer::facts {

void askHotKeys(Report& report) {
    // What the program asks for at first.
    const struct {
        const char* name;
        UINT modifiers;
        UINT key;
    } keys[] = {{"print-screen", 0, VK_SNAPSHOT},
                {"ctrl-d", MOD_CONTROL, 'D'},
                {"shift-print-screen", MOD_SHIFT, VK_SNAPSHOT},
                {"ctrl-print-screen", MOD_CONTROL, VK_SNAPSHOT}};
    for (const auto& [name, modifiers, key] : keys) {
        const BOOL had = RegisterHotKey(nullptr, 1, modifiers, key);
        const DWORD error = GetLastError();
        UnregisterHotKey(nullptr, 1);
        report.set(std::string("hot-keys.") + name, had != FALSE ? "free" : "refused, error " + std::to_string(error));
    }
    DWORD value = 0;
    DWORD size = sizeof value;
    const LONG found = RegGetValueW(HKEY_CURRENT_USER, L"Control Panel\\Keyboard", L"PrintScreenKeyForSnippingEnabled",
                                    RRF_RT_REG_DWORD, nullptr, &value, &size);
    report.set("hot-keys.system-takes-print-screen", found == ERROR_SUCCESS ? std::to_string(value) : "not set");
}

void askWheel(Report& report, int seconds) {
    if (seconds <= 0) {
        report.set("wheel.turns", "not asked");
        return;
    }
    Window window(L"Glimmerpad: scroll here, slowly and fast, with two fingers on the touch pad", {100, 100, 900, 500},
                  RGB(255, 255, 200));
    std::map<int, int> counts;
    window.filter = [&counts](UINT message, WPARAM wParam, LPARAM) {
        if (message == WM_MOUSEWHEEL || message == WM_MOUSEHWHEEL) ++counts[GET_WHEEL_DELTA_WPARAM(wParam)];
        return message == WM_MOUSEWHEEL || message == WM_MOUSEHWHEEL;
    };
    std::printf("%d seconds: please scroll in the yellow window.\n", seconds);
    window.show();
    SetForegroundWindow(window.handle());
    pumpFor(static_cast<DWORD>(seconds) * 1000);
    std::string text;
    for (const auto& [delta, count] : counts) text += std::to_string(delta) + " x " + std::to_string(count) + ", ";
    report.set("wheel.turns", text.empty() ? "none" : text.substr(0, text.size() - 2));
}

}  // namespace glimmer::facts
