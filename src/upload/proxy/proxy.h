#pragma once

#include <string>
#include <string_view>

#include "settings/cached_mem_ini_file.h"
#include "upload/http/w3_client.h"

namespace glimmer {

/// The proxy server that clients go through, as the user has set it up.
struct Proxy {
    bool use = false;
    std::string address;
    std::string port;
    bool needsAuthorization = false;
    std::string user;
    std::string password;
    bool operator==(const Proxy&) const = default;
};

/// The stored one; on the windows' thread. A job on another thread takes the answer along.
Proxy storedProxy(const TCachedMemIniFile& store);
/// Fails, with everything else stored, when the password cannot be protected.
Status storeProxy(TCachedMemIniFile& store, const Proxy& proxy);

/// Copies the values into a client, for its next connection. The password counts only with needsAuthorization.
void applyProxy(const Proxy& proxy, W3Client& client);

/// What the system uses, "host:port" and the like, cut at its first colon: the port is at most 20 characters.
void splitProxyServer(std::string_view server, Proxy& proxy);
/// Takes the system's own setting over: whether a proxy is used, and if so, address and port; user and password stay.
/// False when the system does not tell.
bool detectProxy(Proxy& proxy);
/// The first detection, once for each settings file: stored, with "chkFirstTimeRun" cleared. Whoever makes the upload
/// form or the proxy dialog calls it.
void detectProxyOnce(TCachedMemIniFile& store);

}  // namespace glimmer
