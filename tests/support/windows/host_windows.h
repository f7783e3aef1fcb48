#pragma once

#include <windows.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "support/not_copied.h"

/// A host's thread with a plain Win32 message loop, and the windows that stand on it. Nothing here knows the toolkit
/// behind the library's windows.
namespace glimmer::test {

/// Dispatches messages until the condition holds. Fails the test, and answers false, when it does not within the
/// limit, which only bounds a test that hangs.
bool pumpUntil(const std::function<bool()>& condition, const char* what, unsigned limitMilliseconds = 10000);
/// Dispatches what is waiting now.
void pump();
/// Has each message looked at before it is dispatched; true takes it. For a host's own accelerators.
void setMessageFilter(std::function<bool(MSG&)> filter);

/// Waits without dispatching anything, for what another process does.
bool waitUntil(const std::function<bool()>& condition, const char* what, unsigned limitMilliseconds = 15000);

/// Top-level windows of a thread and of a process, the hidden ones too.
std::vector<HWND> allWindowsOfThread(DWORD thread = GetCurrentThreadId());
std::vector<HWND> allWindowsOfProcess(DWORD process);
/// The visible ones of them.
std::vector<HWND> windowsOfThread(DWORD thread = GetCurrentThreadId());
std::vector<HWND> windowsOfProcess(DWORD process);
/// All children, at any depth.
std::vector<HWND> childrenOf(HWND window);
std::wstring textOf(HWND window);
std::wstring classOf(HWND window);
/// Class and title of each visible window of a thread, one a line. Sends no message, so a hung thread can be asked.
std::string describeWindows(DWORD thread);

/// The library's main window on this thread, shown or not; null when there is none.
HWND mainWindow();

/// To the foreground, with the keyboard.
bool bringForward(HWND window);
/// Real input to the window that has the keyboard: a key with others held down.
void pressKey(WORD key, std::initializer_list<WORD> held = {});

/// Whether a button with that caption ("&" does not count) was there to be clicked. The click is posted.
bool pressButton(HWND window, const std::wstring& caption);
/// Answers as a user who wants none of it: Cancel, No, Close or OK, whichever is there first.
void refuse(HWND box);

/// Sees to the dialogs that come up on this thread while the object lives: notes what each says, and answers it. It
/// works from a timer of this thread, so `answer` is called where a host's own timer would be: inside the dialog.
class DialogRobot : NotCopied {
public:
    struct Seen {
        std::wstring caption;
        std::wstring text;
    };
    explicit DialogRobot(std::function<void(HWND)> answer = refuse);
    ~DialogRobot();

    [[nodiscard]] const std::vector<Seen>& seen() const { return seen_; }
    /// The dialogs since the last call.
    std::vector<Seen> take() { return std::exchange(seen_, {}); }

private:
    static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD);
    void look();

    std::function<void(HWND)> answer_;
    std::vector<HWND> handled_;
    std::vector<Seen> seen_;
    UINT_PTR timer_;
    DialogRobot* outer_;
};

}  // namespace glimmer::test
