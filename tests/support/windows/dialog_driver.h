#pragma once

#include <wx/msw/wrapwin.h>

#include <atomic>
#include <deque>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "support/not_copied.h"

namespace glimmer::test {

/// Answers the windows that the system (or the program, in the middle of an operation) puts up by itself, from a thread
/// of its own: the thread of the test is inside the call that shows them. Each step waits for visible windows of this
/// process with that title and acts on them until one is what it waits for. At the end, a step that was not reached
/// is a failed test.
class DialogDriver : NotCopied {
public:
    struct Step {
        std::wstring title;
        /// On the driver's thread: only messages, nothing of the toolkit. False: it is not this window.
        std::function<bool(HWND)> act;
    };
    explicit DialogDriver(std::deque<Step> steps);
    ~DialogDriver();

private:
    void run();

    std::deque<Step> steps_;
    std::atomic<bool> ending_{false};
    std::thread thread_;
};

/// Visible windows of a class inside a window, in the order of the tab key.
std::vector<HWND> childrenOf(HWND window, const wchar_t* className);
/// Presses the button with this caption (access key marks aside) as a click does; false when there is none.
bool clickButton(HWND window, const std::wstring& caption);
std::wstring textOf(HWND control);

}  // namespace glimmer::test
