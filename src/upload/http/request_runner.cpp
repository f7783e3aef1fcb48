#include "upload/http/request_runner.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "common/debug_channel.h"
#include "common/worker_thread.h"
#include "output/ways/wait_window.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

/// "Sending, 1.5 of 20.0 MB"; nothing while nothing is sent.
std::string sendingText(uint64_t sent, uint64_t total) {
    if (total == 0) return {};
    if (sent >= total) return "\nWaiting for the answer...";
    constexpr double megabyte = 1024.0 * 1024.0;
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "\nSending, %.1f of %.1f MB", static_cast<double>(sent) / megabyte,
                  static_cast<double>(total) / megabyte);
    return text.data();
}

/// Between the two threads.
class Run : public RequestWorker {
public:
    Run(std::string text, InternetPatience patience) : patience_(patience), text_(std::move(text)) {}

    std::unique_ptr<W3Client> newClient() override {
        return std::make_unique<W3Client>(systemInternet(cancelled_, patience_),
                                          ClientListener{.log =
                                                             [this](const std::string& line) {
                                                                 const std::lock_guard lock(mutex_);
                                                                 lines_.push_back(line);
                                                             },
                                                         .sending =
                                                             [this](uint64_t sent, uint64_t total) {
                                                                 const std::lock_guard lock(mutex_);
                                                                 sent_ = sent;
                                                                 total_ = total;
                                                             },
                                                         .cancelled = [this] { return cancelled(); }});
    }
    void setText(const std::string& text) override {
        const std::lock_guard lock(mutex_);
        text_ = text;
        total_ = 0;
    }
    [[nodiscard]] bool cancelled() const override { return *cancelled_; }

    void work(const std::function<void(RequestWorker&)>& job) noexcept {
        const WorkerThread worker;
        try {
            job(*this);
        } catch (...) {
            thrown_ = std::current_exception();
        }
        done_ = true;
    }

    /// On the windows' thread, every now and then; true when the job has ended.
    bool show(WaitWindow& window) {
        if (window.cancelled()) *cancelled_ = true;
        const bool done = done_;  // before the lines: it writes none afterwards
        std::vector<std::string> lines;
        {
            const std::lock_guard lock(mutex_);
            lines.swap(lines_);
            window.setText(text_ + (*cancelled_ ? "\nCancelling..." : sendingText(sent_, total_)));
            if (total_ != 0) window.setDone(static_cast<double>(sent_) / static_cast<double>(total_));
        }
        for (const std::string& line : lines) debugDetail(line);
        return done;
    }
    void cancel() { *cancelled_ = true; }
    void rethrow() const {
        if (thrown_) std::rethrow_exception(thrown_);
    }

private:
    const InternetPatience patience_;
    const std::shared_ptr<std::atomic<bool>> cancelled_ = std::make_shared<std::atomic<bool>>(false);
    std::atomic<bool> done_ = false;
    std::exception_ptr thrown_;
    mutable std::mutex mutex_;
    // Under the mutex:
    std::string text_;
    std::vector<std::string> lines_;
    uint64_t sent_ = 0;
    uint64_t total_ = 0;
};

}  // namespace

bool runRequests(const std::string& text, const std::function<void(RequestWorker&)>& job, InternetPatience patience) {
    GLIMMER_ASSERT_NO_WORKER("request_runner");
    Run run(text, patience);
    WaitWindow window(text + "\n ");  // room for the second line
    std::thread thread([&run, &job] { run.work(job); });
    // Not asked to the end: the thread is to end, and with it the host. The job has to come first.
    try {
        if (!window.waitFor([&run, &window] { return run.show(window); })) run.cancel();
    } catch (...) {
        run.cancel();
        thread.join();
        throw;
    }
    thread.join();
    run.show(window);
    run.rethrow();
    return !run.cancelled();
}

void showFailure(const ClientFailure& failure) {
    if (failure && !failure.cancelled) showMessage({failure.text, failure.caption, MessageIcon::Error});
}

}  // namespace glimmer
