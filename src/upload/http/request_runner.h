#pragma once

#include <functional>
#include <memory>
#include <string>

#include "upload/http/system_internet.h"
#include "upload/http/w3_client.h"

namespace glimmer {

/// What a job on a worker thread has of the world: clients whose progress the wait window shows and whose requests its
/// Cancel ends, and a line of text in it. No window, no option, no setting and no message box: a job takes what it
/// needs of those along, and whoever ran it shows what it came to.
class RequestWorker {
public:
    virtual ~RequestWorker() = default;
    /// For this thread, to be destroyed on it.
    virtual std::unique_ptr<W3Client> newClient() = 0;
    /// What is being done, in the wait window.
    virtual void setText(const std::string& text) = 0;
    [[nodiscard]] virtual bool cancelled() const = 0;
};

/// Runs a job on a thread of its own and comes back when that has ended, while a wait window with that text shows
/// "Sending, N of M MB" and a Cancel button, and the windows of the host and its timers go on. False when the user
/// has cancelled, or a shut-down has; the job has ended then, too. What it throws is thrown on. Lines for the log are
/// written on this thread, which is that of the windows.
bool runRequests(const std::string& text, const std::function<void(RequestWorker&)>& job,
                 InternetPatience patience = {});

/// Shows the message of a failure, unless it was a cancellation.
void showFailure(const ClientFailure& failure);

}  // namespace glimmer
