#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "settings/options.h"

namespace glimmer {

/// The global hot keys of the options, registered for one window (HWND) as long as the object lives and again
/// whenever the options change. A key that another program holds is left to it, and reported once, by name.
class HotKeys {
public:
    /// An option's control name and what its key does.
    struct Command {
        const char* option;
        std::function<void()> run;
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
    /// Reports the keys that another program holds and that were not reported yet.
    void reportTaken();

private:
    void registerAll();
    void releaseAll();

    void* window_;
    std::vector<Command> commands_;
    std::function<void(const std::string&)> report_;
    std::set<int32_t> taken_;     ///< shortcut values that could not be registered
    std::set<int32_t> reported_;  ///< and were reported
    bool suspended_ = false;
    OptionsListener listener_;
};

}  // namespace glimmer
