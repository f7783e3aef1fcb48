#pragma once

#include <string_view>

// The controls of the proxy dialog; their values are stored under these names.

namespace glimmer::proxyKey {

inline constexpr const char* use = "chkUseProxyServer";
inline constexpr const char* address = "edtProxyAddr";
inline constexpr const char* port = "edtProxyPort";
inline constexpr const char* needsAuth = "chkProxyNeedsAuth";
inline constexpr const char* user = "edtProxyUser";
inline constexpr const char* password = "edtProxyPassword";
inline constexpr const char* firstTime = "chkFirstTimeRun";

}  // namespace glimmer::proxyKey
