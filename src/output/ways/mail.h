#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "common/result.h"

namespace glimmer {

/// Whether a mail program is installed for Simple MAPI.
bool hasMailProgram();

enum class MailOutcome : uint8_t {
    Handed,
    GivenUp,
    Failed,
    Open,    ///< the mail program has the message, and the user writes it
    Waiting  ///< it has an earlier one; this one comes up when that is done
};

struct Mail {
    std::string subject;
    std::string body;
    std::vector<std::filesystem::path> attachments;
};

/// Hands files to the user's mail program as attachments of one new message, whose window stays open for the user and
/// belongs to `window` (HWND, may be null). The mail program works in a thread of its own; this one waits only until
/// its window is there, or a few seconds, and paints meanwhile. One message is open at a time; others wait.
///
/// After Open and Waiting `later` is told the outcome, on this thread, when its message loop runs.
MailOutcome sendMail(Mail mail, void* window, std::function<void(MailOutcome)> later);
/// Whether a message is open or waits: it goes with the process.
bool mailIsOpen();
/// Nobody is told any more what becomes of the messages that are open. They stay open.
void forgetMails();

/// The text below which the user writes.
std::string mailFooter();

}  // namespace glimmer
