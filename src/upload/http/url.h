#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/result.h"

namespace glimmer {

enum class Protocol : uint8_t { Ftp = 0, Http = 1, Https = 2 };

/// 21, 80 or 443.
uint16_t defaultPort(Protocol protocol);

/// An address of a server and of something on it.
struct Url {
    Protocol protocol = Protocol::Http;
    std::string host;        ///< as it was written, in lower case; an IPv6 address has its brackets
    uint16_t port = 80;      ///< never 0
    std::string path = "/";  ///< begins with "/", holds the query, has nothing but visible ASCII
    std::string user{};      ///< percent signs decoded
    std::string password{};  ///< likewise
    bool operator==(const Url&) const = default;
};

/// Reads "http", "https" or "ftp", host, optional colon and port (0 means the protocol's own), path; a user name and a
/// password may stand ahead of an at sign. A fragment is dropped; blanks and bytes above ASCII in the path are sent as
/// percent signs and digits. Fails with a sentence that does not repeat the address: it may hold a password.
Result<Url> parseUrl(std::string_view text);

/// "http://host" and, when it is not the protocol's own, ":port". Neither path nor user.
std::string serverOf(const Url& url);

/// Bytes as a percent sign and two digits, except letters, digits and those of `kept`.
std::string percentEncoded(std::string_view text, std::string_view kept = "-._~");
/// The reverse; a percent sign without two digits stays as it is.
std::string percentDecoded(std::string_view text);

}  // namespace glimmer
