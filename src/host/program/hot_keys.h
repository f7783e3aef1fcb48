#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "settings/options.h"

namespace glimmer {

/// The system's modifier flags (MOD_...) of a shortcut value.
uint32_t hotKeyModifiers(int32_t shortcut);

/// The global hot keys of the options, registered for one window (HWND) as long as the object lives and again
/// whenever the options change. A key that another program holds is left to it, and reported once, by name.
class HotKeys {
public:
    /// An option's control name and what its key does.
    struct Command {
        const char* option;
        std::function<void()> run;
        /// An option that is on until the user has agreed to the standard key, which other programs use too; before
        /// that it is not taken. Another key is one that the user chose.
        const char* unasked = nullptr;
    };
    /// `report` is told, in a sentence or more, which keys cannot be had; not from inside the constructor.
    HotKeys(void* window, std::vector<Command> commands, std::function<void(const std::string&)> report);
    ~HotKeys();
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;
    HotKeys(HotKeys&&) = delete;
    HotKeys& operator=(HotKeys&&) = delete;

    /// Runs the command of a WM_HOTKEY message; its wParam is the number.
    void pressed(int id) const;
    /// Gives the keys up while the user sets them, so that they reach the boxes in which they are set.
    void suspend(bool suspended);
    /// Reports the keys that another program holds and that were not reported yet. Print Screen is not among them
    /// where the system keeps it: that has a cure of its own.
    void reportTaken();
    /// Asks again for keys that could not be had: a setting of the system may have changed.
    void retry();

    /// Whether a command's key is Print Screen, and the system keeps that.
    [[nodiscard]] bool printScreenKept() const;
    /// Whether the key of that option waits for the user to agree.
    [[nodiscard]] bool waitsForConsent(std::string_view option) const;
    /// Why that option's command cannot be had with that key, for people; empty when it can.
    [[nodiscard]] std::string trouble(std::string_view option, int32_t shortcut) const;
    /// A key that nobody uses, for a command whose own cannot be had; nothing when all that come into question are
    /// taken.
    [[nodiscard]] std::optional<int32_t> freeKey() const;

private:
    [[nodiscard]] static bool unasked(const Command& command, int32_t shortcut);
    [[nodiscard]] bool canBeHad(int32_t shortcut) const;
    void noteConsent() const;
    [[nodiscard]] bool registerKey(size_t command) const;
    void registerAll();
    void releaseAll();

    void* window_;
    std::vector<Command> commands_;
    std::function<void(const std::string&)> report_;
    std::set<int32_t> had_;       ///< shortcut values that are registered
    std::set<int32_t> taken_;     ///< and that could not be
    std::set<int32_t> reported_;  ///< and were reported
    bool suspended_ = false;
    OptionsListener listener_;
};

}  // namespace glimmer
