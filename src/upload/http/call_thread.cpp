#include "upload/http/call_thread.h"

#include <windows.h>

#include <atomic>
#include <mutex>
#include <thread>
#include <utility>

#include "common/assertion.h"

namespace glimmer {

namespace {

constexpr DWORD betweenQuestions = 50;  // milliseconds

std::atomic<int>& threadsLeft() {
    static std::atomic<int> count = 0;
    return count;
}

/// A signal of the system that one waiter takes.
class Signal {
public:
    Signal() : event_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}
    ~Signal() { CloseHandle(event_); }
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;
    Signal(Signal&&) = delete;
    Signal& operator=(Signal&&) = delete;

    void give() { SetEvent(event_); }
    bool wait(DWORD milliseconds) { return WaitForSingleObject(event_, milliseconds) == WAIT_OBJECT_0; }

private:
    HANDLE event_;
};

}  // namespace

struct CallThread::Shared {
    Signal wanted;
    Signal done;
    std::mutex mutex;
    // Under the mutex:
    std::function<void()> call;
    std::function<void()> late;
    bool running = false;
    bool givenUp = false;
    bool ending = false;
};

CallThread::CallThread() : shared_(std::make_shared<Shared>()) {
    std::thread([shared = shared_] { serve(shared); }).detach();
}

CallThread::~CallThread() {
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->ending = true;
    }
    shared_->wanted.give();
}

void CallThread::serve(const std::shared_ptr<Shared>& shared) {
    for (;;) {
        shared->wanted.wait(INFINITE);
        std::unique_lock lock(shared->mutex);
        if (!shared->running) return;  // there is only one other thing that can be wanted
        std::function<void()> call = std::exchange(shared->call, {});
        lock.unlock();
        call();
        call = {};  // what it holds is gone before anybody hears of its end
        lock.lock();
        shared->running = false;
        if (shared->givenUp) break;
        shared->done.give();
    }
    const std::function<void()> late = std::exchange(shared->late, {});
    if (late) late();
    --threadsLeft();
}

bool CallThread::run(std::function<void()> call, std::function<void()> late, const std::function<bool()>& giveUp) {
    {
        const std::lock_guard lock(shared_->mutex);
        GLIMMER_ASSERT(!shared_->running && !shared_->givenUp, "!running", "CallThread");
        shared_->call = std::move(call);
        shared_->late = std::move(late);
        shared_->running = true;
    }
    shared_->wanted.give();
    while (!shared_->done.wait(betweenQuestions)) {
        if (!giveUp()) continue;
        const std::lock_guard lock(shared_->mutex);
        if (!shared_->running) {
            shared_->done.wait(0);  // in the meantime: it was given under the mutex
            break;
        }
        shared_->givenUp = true;
        ++threadsLeft();
        return false;
    }
    shared_->late = {};
    return true;
}

int CallThread::left() { return threadsLeft(); }

}  // namespace glimmer
