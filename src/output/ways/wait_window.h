#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "common/inside_modal.h"
#include "common/progress.h"

namespace glimmer {

/// The "Please wait" window of one operation: its text, how far it has come, and a Cancel button. Other windows of
/// the program are disabled while it is shown. It only appears when the operation takes longer than a moment, and
/// counts as an open dialog: a wish to close down cancels it and waits for the code below it.
///
/// An operation on this thread calls progress() again and again. One on another thread has waitFor() called, which
/// lives by itself as a modal dialog does: the host's windows and timers go on.
class WaitWindow {
public:
    explicit WaitWindow(const std::string& text);
    ~WaitWindow();
    WaitWindow(const WaitWindow&) = delete;
    WaitWindow& operator=(const WaitWindow&) = delete;
    WaitWindow(WaitWindow&&) = delete;
    WaitWindow& operator=(WaitWindow&&) = delete;

    void setText(const std::string& text);
    /// Of `count` parts of equal length the next progress() calls are about part `index` (from 0).
    void setPart(size_t index, size_t count);
    /// The part's progress, 0 to 1; lets the window live. False when the user has cancelled.
    bool progress(double done);
    [[nodiscard]] bool cancelled() const { return cancelled_; }
    /// progress() as a function to be handed on; this window must outlive it.
    [[nodiscard]] Progress asProgress() {
        return [this](double done) { return progress(done); };
    }

    /// Comes back when `look` answers true. It is asked some thirty times a second and may call setText() and
    /// setDone(); after cancelled() it has to come to its end soon. False when this thread's message loops are to end
    /// and `look` is not asked any more.
    bool waitFor(const std::function<bool()>& look);
    /// For `look`: the part that is done, 0 to 1.
    void setDone(double done);

private:
    class Dialog;

    void open();
    void cancel();

    std::unique_ptr<Dialog> dialog_;  ///< none until it is needed
    WaitScope scope_;
    std::string text_;
    std::chrono::steady_clock::time_point started_ = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point pumped_ = started_;
    double partStart_ = 0;
    double partLength_ = 1;
    bool cancelled_ = false;
};

}  // namespace glimmer
