#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "upload/http/url.h"

namespace glimmer {

/// How often one request is sent on.
inline constexpr int mostRedirects = 5;

/// Where an answer with this status and this "Location" sends a request; nothing when it is no redirection. What comes
/// next is always a GET: a request whose body would have to be sent again (307 and 308 of a POST) is not followed, nor
/// is a step from HTTPS to HTTP or to another protocol; both fail with a sentence that says so.
Result<std::optional<Url>> redirectTarget(const Url& from, bool post, uint32_t status, std::string_view location);

}  // namespace glimmer
