#pragma once

namespace glimmer {

/// From now on insideModal() knows the toolkit's own modal dialogs. Does nothing when called again.
void watchModalDialogs();

/// While one lives, code waits on the stack as below an open dialog, without a loop of the toolkit.
class WaitScope {
public:
    WaitScope();
    ~WaitScope();
    WaitScope(const WaitScope&) = delete;
    WaitScope& operator=(const WaitScope&) = delete;
    WaitScope(WaitScope&&) = delete;
    WaitScope& operator=(WaitScope&&) = delete;
};

/// Whether a dialog, a message or a menu of ours is open, a window of ours is being moved, or something is carried with
/// the mouse. Code of ours then waits on the stack for it to end, although messages, a host's calls and captures come
/// through: nothing that it stands on may be replaced or destroyed.
bool insideModal();

/// The part of it that the system does alone: a menu of ours is open or a window of ours is being moved.
bool insideSystemLoop();

/// Whether a window (HWND) is one of ours. The root decides: the toolkit's own search would climb from a system dialog
/// to the window that owns it.
bool isOurWindow(void* window);

/// The host's end was asked for (WM_QUIT with that code) while a dialog's loop may be the one that heard of it: it is
/// passed on to the loop around that one.
void passQuitOn(int code);

}  // namespace glimmer
