#pragma once

#include <functional>
#include <utility>

#include "main_window/display_state.h"

namespace glimmer {

/// Runs the commands of the main window. Only a host starts one in the middle of another, while a dialog is up.
class CommandRunner {
public:
    struct Events {
        std::function<void()> ended;  ///< the last one that ran
        std::function<void()> close;  ///< the window is to be closed, and none runs
    };
    /// While a command runs the window is held.
    CommandRunner(DisplayState& state, Events events) : state_(state), events_(std::move(events)) {}

    [[nodiscard]] int running() const { return running_; }
    /// Runs it; what it throws is told in a message.
    void run(const std::function<void()>& command);
    /// Closes the window: now, or when the command that runs has ended. Its captures are needed until then.
    void close();

private:
    DisplayState& state_;
    Events events_;
    int running_ = 0;
    bool closing_ = false;
};

}  // namespace glimmer
