#pragma once

#include <string>
#include <string_view>

namespace glimmer {

/// A line for the log without what would let its reader into an account: "***" stands for user and password in an
/// address, for the value of each "name=value" whose name speaks of a password, a token, a signature, a key or the
/// like, and for what follows the name of a header that authorises ("Authorization", "Cookie" and their like).
std::string maskedForLog(std::string_view text);

}  // namespace glimmer
