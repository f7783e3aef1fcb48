#pragma once

// What the parts of W3Client share.

namespace glimmer {

inline constexpr const char* systemCaption = "*** Error ***";
inline constexpr const char* unknownException = "unknown exception...";
inline constexpr const char* requestFailed = "request failed...";
inline constexpr const char* requestFailedInPieces = "request failed";  // of a multipart request
inline constexpr unsigned proxyRefuses = 407;

}  // namespace glimmer
