#pragma once

#include <chrono>
#include <memory>
#include <string>

#include <wx/frame.h>

#include "imaging/png_codec.h"

class wxGauge;
class wxStaticText;

namespace glimmer {

/// The "Please wait" window of one operation: its text, how far it has come, and a Cancel button. Other windows of
/// the program are disabled while it lives. It only appears when the operation takes longer than a moment.
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

private:
    void open();
    void show(double all);
    void pump();

    struct Windows;
    std::unique_ptr<Windows> windows_;  ///< none until it appears
    std::string text_;
    std::chrono::steady_clock::time_point started_ = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point pumped_ = started_;
    double partStart_ = 0;
    double partLength_ = 1;
    bool cancelled_ = false;
};

}  // namespace glimmer
