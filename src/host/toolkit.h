#pragma once

namespace glimmer {

/// Starts the window toolkit on this thread, at first use; later calls do nothing. Whether it runs. It stays until
/// the process ends, and so does the library: the toolkit cannot be started a second time.
///
/// Without a loop of our own (a host's loop dispatches our messages then) a hook keeps our windows whole: keyboard
/// shortcuts and tab order, deferred deletion, update events.
bool startToolkit();

/// Carries out what was put off to a quiet moment: destroys windows that were closed, handles posted events.
void runDeferredWork();

/// The standalone program's message loop: returns after terminateApplication().
void runMessageLoop();
/// Ends the message loop, open dialogs first, without a question.
void terminateApplication();

}  // namespace glimmer
