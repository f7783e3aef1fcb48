#include "host/hot_keys.h"

#include <windows.h>

#include "settings/hot_key.h"

namespace glimmer {

namespace {

/// The system's modifier flags of a shortcut value.
UINT modifiersOf(int32_t shortcut) {
    UINT modifiers = MOD_NOREPEAT;
    if ((shortcut & hotKeyShift) != 0) modifiers |= MOD_SHIFT;
    if ((shortcut & hotKeyCtrl) != 0) modifiers |= MOD_CONTROL;
    if ((shortcut & hotKeyAlt) != 0) modifiers |= MOD_ALT;
    return modifiers;
}

}  // namespace

HotKeys::HotKeys(void* window, std::vector<Command> commands)
    : window_(window), commands_(std::move(commands)), listener_([this] {
          releaseAll();
          registerAll();
      }) {
    registerAll();
}

HotKeys::~HotKeys() { releaseAll(); }

void HotKeys::registerAll() {
    for (size_t i = 0; i < commands_.size(); ++i) {
        const int32_t shortcut = OptionsHolder().number(commands_[i].option);
        if (hotKeyCode(shortcut) == 0) continue;
        RegisterHotKey(static_cast<HWND>(window_), static_cast<int>(i), modifiersOf(shortcut), hotKeyCode(shortcut));
    }
}

void HotKeys::releaseAll() {
    for (size_t i = 0; i < commands_.size(); ++i) UnregisterHotKey(static_cast<HWND>(window_), static_cast<int>(i));
}

void HotKeys::pressed(int id) const {
    if (id >= 0 && static_cast<size_t>(id) < commands_.size()) commands_[static_cast<size_t>(id)].run();
}

}  // namespace glimmer
