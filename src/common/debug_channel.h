#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace glimmer {

/// Where remarks for a developer go: nowhere, until somebody sets it.
using DebugChannel = std::function<void(std::string_view)>;

/// Sets the channel and answers the one before. The Windows side sends remarks to the debugger.
DebugChannel setDebugChannel(DebugChannel channel);

/// Sends one remark. Every program of the session can read it: it holds no secret, nothing of what the user captures
/// and no text that the user is shown.
void debugRemark(std::string_view text);

/// Sends a remark with an address, a file's name or a message's text; only while somebody wants that, and without what
/// follows "?" or "#" in addresses, which may let others into an account.
void debugDetail(std::string_view text);
/// Who says whether it is wanted; nobody at first.
void setDebugDetailsWanted(std::function<bool()> wanted);

/// The text with its addresses cut off at their first "?" or "#".
std::string withoutQueries(std::string_view text);

}  // namespace glimmer
