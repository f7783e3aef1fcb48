#pragma once

#include <functional>

namespace glimmer {

/// Starts the window toolkit on this thread, at first use; later calls do nothing. Whether it runs. It stays until
/// the process ends, and so does the library: the toolkit cannot be started a second time.
///
/// Without a loop of our own (a host's loop dispatches our messages then) a hook keeps our windows whole: keyboard
/// shortcuts and tab order, deferred deletion, update events.
bool startToolkit();
/// Whether startToolkit() was called.
bool toolkitRuns();

/// What is done about the end of the session, instead of the toolkit's own way, which closes windows when it is only
/// asked and ends the process. `asked` may be called many times, for sessions that go on, too. `ended` comes once the
/// session does end. Both may come from the middle of a dialog, and nothing may be asked in them.
struct SessionEnd {
    std::function<void()> asked;
    std::function<void()> ended;
};
void setSessionEnd(SessionEnd action);

/// Carries out what was put off to a quiet moment: destroys windows that were closed, handles posted events.
void runDeferredWork();

/// Answers all dialogs as by closing them and closes menus. What stands behind them has yet to come back when this
/// returns.
void cancelModals();
/// Has `attempt` called from the message loop, every other moment, until it answers true. All that is open is
/// cancelled each time, since one dialog may be followed by another.
void cancelModalsUntil(std::function<bool()> attempt);

/// The standalone program's message loop: returns after terminateApplication().
void runMessageLoop();
/// Ends the message loop without a question: whatever is open is cancelled, and what would ask is answered as by
/// closing it.
void terminateApplication();
/// Whether that was called: nothing new is begun.
bool applicationTerminates();

}  // namespace glimmer
