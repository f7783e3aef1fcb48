#include "main_window/command_runner.h"

#include <exception>
#include <new>
#include <utility>

#include "settings/message_box.h"

namespace glimmer {

void CommandRunner::run(const std::function<void()>& command) {
    ++running_;
    const DisplayState before = std::exchange(state_, DisplayState::Held);
    try {
        command();
    } catch (const std::bad_alloc&) {
        showError("There is not enough memory for this.");
    } catch (const std::exception& failure) {
        showError(failure.what());
    }
    if (state_ == DisplayState::Held) state_ = before;
    if (--running_ > 0) return;
    if (closing_)
        events_.close();
    else
        events_.ended();
}

void CommandRunner::close() {
    closing_ = true;
    if (running_ == 0) events_.close();
}

}  // namespace glimmer
