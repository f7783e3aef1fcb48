#pragma once

#include <functional>
#include <vector>

#include "settings/options.h"

namespace glimmer {

/// The global hot keys of the options, registered for one window (HWND) as long as the object lives and again
/// whenever the options change. A key that another program holds is left to it.
class HotKeys {
public:
    /// An option's control name and what its key does.
    struct Command {
        const char* option;
        std::function<void()> run;
    };
    HotKeys(void* window, std::vector<Command> commands);
    ~HotKeys();
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;
    HotKeys(HotKeys&&) = delete;
    HotKeys& operator=(HotKeys&&) = delete;

    /// Runs the command of a WM_HOTKEY message; its wParam is the number.
    void pressed(int id) const;

private:
    void registerAll();
    void releaseAll();

    void* window_;
    std::vector<Command> commands_;
    OptionsListener listener_;
};

}  // namespace glimmer
