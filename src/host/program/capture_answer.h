#pragma once

#include <optional>
#include <string>

#include "capture/capture_request.h"

// A capture that one start of the program asks the instance that runs for: its text among what is handed over, and how
// the start learns what came of it.

namespace glimmer {

/// The start's side: waits for the answer to one request.
class AwaitedAnswer {
public:
    AwaitedAnswer();
    ~AwaitedAnswer();
    AwaitedAnswer(const AwaitedAnswer&) = delete;
    AwaitedAnswer& operator=(const AwaitedAnswer&) = delete;
    AwaitedAnswer(AwaitedAnswer&&) = delete;
    AwaitedAnswer& operator=(AwaitedAnswer&&) = delete;

    /// The text to be handed over.
    [[nodiscard]] std::string text(const CaptureRequest& request) const;
    /// Returns when the instance has answered; a failure when it has ended meanwhile.
    [[nodiscard]] CaptureOutcome wait() const;

private:
    std::string name_;
    void* answers_[captureOutcomes] = {};  // events (HANDLE), one for each outcome
};

/// The instance's side: a request as it came.
struct HandedCapture {
    CaptureRequest request;
    std::string answerTo;
};
/// Nothing when a text that was handed over is none.
std::optional<HandedCapture> handedCapture(const std::string& text);
void answerCapture(const std::string& answerTo, CaptureOutcome outcome);

}  // namespace glimmer
