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

HotKeys::HotKeys(void* window, std::vector<Command> commands, std::function<void(const std::string&)> report)
    : window_(window), commands_(std::move(commands)), report_(std::move(report)), listener_([this] {
          if (suspended_) return;
          releaseAll();
          registerAll();
          reportTaken();
      }) {
    registerAll();
}

HotKeys::~HotKeys() { releaseAll(); }

void HotKeys::registerAll() {
    taken_.clear();
    for (size_t i = 0; i < commands_.size(); ++i) {
        const int32_t shortcut = OptionsHolder().number(commands_[i].option);
        if (static_cast<UINT>(hotKeyCode(shortcut)) == 0) continue;
        if (RegisterHotKey(static_cast<HWND>(window_), static_cast<int>(i), modifiersOf(shortcut),
                           static_cast<UINT>(hotKeyCode(shortcut))) == FALSE)
            taken_.insert(shortcut);
    }
}

void HotKeys::releaseAll() {
    for (size_t i = 0; i < commands_.size(); ++i) UnregisterHotKey(static_cast<HWND>(window_), static_cast<int>(i));
}

void HotKeys::suspend(bool suspended) {
    if (suspended == suspended_) return;
    suspended_ = suspended;
    releaseAll();
    if (suspended) return;
    registerAll();
    reportTaken();
}

void HotKeys::reportTaken() {
    std::string text;
    for (const Command& command : commands_) {
        const int32_t shortcut = OptionsHolder().number(command.option);
        if (taken_.count(shortcut) == 0 || !reported_.insert(shortcut).second) continue;
        text += '\n';
        text += hotKeyText(shortcut);
        text += ": ";
        text += optionTable()[optionIndex(command.option)].caption;
    }
    // Short enough for all keys at once: a balloon holds 255 characters.
    if (!text.empty() && report_) report_("Taken by another program:" + text);
}

void HotKeys::pressed(int id) const {
    if (id >= 0 && static_cast<size_t>(id) < commands_.size()) commands_[static_cast<size_t>(id)].run();
}

}  // namespace glimmer
