#pragma once

#include <functional>
#include <string_view>

namespace glimmer {

/// Where remarks for a developer go: nowhere, until somebody sets it.
using DebugChannel = std::function<void(std::string_view)>;

/// Sets the channel and answers the one before. The Windows side sends remarks to the debugger.
DebugChannel setDebugChannel(DebugChannel channel);

/// Sends one remark; it never holds a secret.
void debugRemark(std::string_view text);

}  // namespace glimmer
