#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

namespace glimmer {

/// A thread for calls of the system that may not come back for a long time, and that nothing can interrupt. Its user
/// waits for each call, but not for ever: when the wait is over before the call is, the user goes on, the thread is
/// left to itself and ends as soon as the call has come back. What a call touches therefore belongs to the call.
class CallThread {
public:
    CallThread();
    ~CallThread();  ///< waits for nothing
    CallThread(const CallThread&) = delete;
    CallThread& operator=(const CallThread&) = delete;
    CallThread(CallThread&&) = delete;
    CallThread& operator=(CallThread&&) = delete;

    /// Has `call` run by the thread; true when it is done. `giveUp`, asked some twenty times a second, ends the wait
    /// with false; if the call comes back after that, `late` is run by the thread. Afterwards this object takes no more
    /// calls.
    bool run(std::function<void()> call, std::function<void()> late, const std::function<bool()>& giveUp);

    /// Threads that were left to themselves and have not ended yet, in this process.
    static int left();

private:
    struct Shared;
    static void serve(const std::shared_ptr<Shared>& shared);

    std::shared_ptr<Shared> shared_;
};

}  // namespace glimmer
