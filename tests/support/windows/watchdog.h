#pragma once

namespace glimmer::test {

/// From now on a test that runs longer than this ends the program with exit code 3, after it printed the windows that
/// stand open and where the main thread is: a call that never comes back must be seen, not waited for. To be called
/// once, on the thread that runs the tests.
void startWatchdog(unsigned seconds);

}  // namespace glimmer::test
