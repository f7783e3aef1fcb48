#include "host/program/hot_keys.h"

#include <windows.h>

#include <algorithm>

#include "host/program/print_screen.h"
#include "settings/hot_key.h"

namespace glimmer {

uint32_t hotKeyModifiers(int32_t shortcut) {
    UINT modifiers = MOD_NOREPEAT;
    if ((shortcut & hotKeyShift) != 0) modifiers |= MOD_SHIFT;
    if ((shortcut & hotKeyCtrl) != 0) modifiers |= MOD_CONTROL;
    if ((shortcut & hotKeyAlt) != 0) modifiers |= MOD_ALT;
    return modifiers;
}

HotKeys::HotKeys(void* window, std::vector<Command> commands, std::function<void(const std::string&)> report)
    : window_(window), commands_(std::move(commands)), report_(std::move(report)), listener_([this] {
          noteConsent();
          if (suspended_) return;
          releaseAll();
          registerAll();
          reportTaken();
      }) {
    noteConsent();
    registerAll();
}

HotKeys::~HotKeys() { releaseAll(); }

bool HotKeys::unasked(const Command& command, int32_t shortcut) {
    return command.unasked != nullptr && OptionsHolder().on(command.unasked) &&
           shortcut == optionTable()[optionIndex(command.option)].standard;
}

/// Whoever set another key knows what a global key is, and gets the standard one when it is set again.
void HotKeys::noteConsent() const {
    for (const Command& command : commands_)
        if (command.unasked != nullptr && !unasked(command, OptionsHolder().number(command.option)))
            OptionsHolder().setOn(command.unasked, false);
}

bool HotKeys::registerKey(size_t command) const {
    const int32_t shortcut = OptionsHolder().number(commands_[command].option);
    return RegisterHotKey(static_cast<HWND>(window_), static_cast<int>(command), hotKeyModifiers(shortcut),
                          static_cast<UINT>(hotKeyCode(shortcut))) != FALSE;
}

void HotKeys::registerAll() {
    for (size_t i = 0; i < commands_.size(); ++i) {
        const int32_t shortcut = OptionsHolder().number(commands_[i].option);
        if (static_cast<UINT>(hotKeyCode(shortcut)) == 0 || unasked(commands_[i], shortcut)) continue;
        (registerKey(i) ? had_ : taken_).insert(shortcut);
    }
}

void HotKeys::releaseAll() {
    for (size_t i = 0; i < commands_.size(); ++i) UnregisterHotKey(static_cast<HWND>(window_), static_cast<int>(i));
    had_.clear();
    taken_.clear();
}

void HotKeys::suspend(bool suspended) {
    if (suspended == suspended_) return;
    suspended_ = suspended;
    releaseAll();
    if (suspended) return;
    registerAll();
    reportTaken();
}

void HotKeys::retry() {
    if (suspended_) return;
    // Those that work stay as they are: they may be pressed at this moment.
    for (size_t i = 0; i < commands_.size(); ++i) {
        const int32_t shortcut = OptionsHolder().number(commands_[i].option);
        if (taken_.count(shortcut) == 0 || !registerKey(i)) continue;
        taken_.erase(shortcut);
        had_.insert(shortcut);
    }
}

void HotKeys::reportTaken() {
    std::string text;
    const bool kept = systemKeepsPrintScreen();
    for (const Command& command : commands_) {
        const int32_t shortcut = OptionsHolder().number(command.option);
        if (kept && isPlainPrintScreen(shortcut)) continue;
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

bool HotKeys::printScreenKept() const {
    const bool wanted = std::any_of(commands_.begin(), commands_.end(), [](const Command& command) {
        return isPlainPrintScreen(OptionsHolder().number(command.option));
    });
    return wanted && systemKeepsPrintScreen();
}

bool HotKeys::waitsForConsent(std::string_view option) const {
    return std::any_of(commands_.begin(), commands_.end(), [option](const Command& command) {
        return option == command.option && unasked(command, OptionsHolder().number(command.option));
    });
}

bool HotKeys::canBeHad(int32_t shortcut) const {
    if (had_.count(shortcut) != 0) return true;
    const int trial = static_cast<int>(commands_.size());
    const bool had = RegisterHotKey(static_cast<HWND>(window_), trial, hotKeyModifiers(shortcut),
                                    static_cast<UINT>(hotKeyCode(shortcut))) != FALSE;
    if (had) UnregisterHotKey(static_cast<HWND>(window_), trial);
    return had;
}

std::string HotKeys::trouble(std::string_view option, int32_t shortcut) const {
    if (static_cast<UINT>(hotKeyCode(shortcut)) == 0) return {};
    const std::string key = hotKeyText(shortcut);
    if (isPlainPrintScreen(shortcut) && systemKeepsPrintScreen())
        return key + " is kept by Windows for its own screen capture.";
    for (const Command& command : commands_)
        if (option == command.option && unasked(command, shortcut))
            return key + " is not taken from other programs before you agree to it in the main window.";
    return canBeHad(shortcut) ? std::string() : key + " is taken by another program.";
}

std::optional<int32_t> HotKeys::freeKey() const {
    constexpr int32_t f12 = VK_F12;
    for (const int32_t key : {hotKeyCtrl | hotKeyShift | f12, hotKeyCtrl | hotKeyAlt | f12,
                              hotKeyCtrl | hotKeyShift | (f12 - 1), hotKeyCtrl | hotKeyAlt | (f12 - 1)}) {
        const bool used = std::any_of(commands_.begin(), commands_.end(), [key](const Command& command) {
            return OptionsHolder().number(command.option) == key;
        });
        if (!used && canBeHad(key)) return key;
    }
    return std::nullopt;
}

}  // namespace glimmer
