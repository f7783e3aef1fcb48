#include "upload/http/redirect.h"

#include "common/text.h"

namespace glimmer {

namespace {

/// An address as a server may shorten it: from a scheme, "//host", "/path", "?query", or a name beside the last one.
std::string completed(const Url& from, const std::string& location) {
    const std::string server = serverOf(from);
    const size_t query = std::min(from.path.find('?'), from.path.size());
    if (location.find("://") < location.find_first_of("/?#")) return location;
    if (location.starts_with("//")) return server.substr(0, server.find("//")) + location;
    if (location.starts_with("/")) return server + location;
    if (location.starts_with("?")) return server + from.path.substr(0, query) + location;
    return server + from.path.substr(0, from.path.rfind('/', query) + 1) + location;
}

}  // namespace

Result<std::optional<Url>> redirectTarget(const Url& from, bool post, uint32_t status, std::string_view location) {
    const bool repeats = status == 307 || status == 308;
    if ((status != 301 && status != 302 && status != 303 && !repeats) || trimmed(location).empty())
        return std::optional<Url>();
    Result<Url> target = parseUrl(completed(from, trimmed(location)));
    if (!target) return Failure{"The server sends the request on to an address that is not valid."};
    if (post && repeats)
        return Failure{"The server wants the upload to be sent to another address: " + serverOf(*target) + "."};
    if (from.protocol == Protocol::Https && target->protocol != Protocol::Https)
        return Failure{"The server sends the request on to an address without encryption (" + serverOf(*target) +
                       "). It was not followed."};
    if (target->protocol == Protocol::Ftp)
        return Failure{"The server sends the request on to an FTP server (" + serverOf(*target) +
                       "). It was not followed."};
    return std::optional<Url>(target.take());
}

}  // namespace glimmer
