#include "upload/proxy/proxy.h"

// clang-format off
#include <windows.h>
#include <wininet.h>
// clang-format on

#include <array>

#include "common/wide_text.h"
#include "settings/secrets.h"
#include "settings/settings.h"
#include "upload/proxy/proxy_keys.h"

namespace glimmer {

namespace {

constexpr size_t longestPort = 20;

std::string section() { return settingsSection(group::uploader); }

}  // namespace

Proxy storedProxy(const TCachedMemIniFile& store) {
    return {store.readBool(section(), proxyKey::use, false), store.readString(section(), proxyKey::address),
            store.readString(section(), proxyKey::port),     store.readBool(section(), proxyKey::needsAuth, false),
            store.readString(section(), proxyKey::user),     readSecret(store, section(), proxyKey::password)};
}

Status storeProxy(TCachedMemIniFile& store, const Proxy& proxy) {
    store.writeBool(section(), proxyKey::use, proxy.use);
    store.writeString(section(), proxyKey::address, proxy.address);
    store.writeString(section(), proxyKey::port, proxy.port);
    store.writeBool(section(), proxyKey::needsAuth, proxy.needsAuthorization);
    store.writeString(section(), proxyKey::user, proxy.user);
    return writeSecret(store, section(), proxyKey::password, proxy.password);
}

void applyProxy(const Proxy& proxy, W3Client& client) {
    const bool named = proxy.needsAuthorization;
    const std::string address = proxy.port.empty() ? proxy.address : proxy.address + ":" + proxy.port;
    client.SetProxy(proxy.use && !proxy.address.empty(), address, named ? proxy.user : "", named ? proxy.password : "");
}

void splitProxyServer(std::string_view server, Proxy& proxy) {
    const size_t colon = server.find(':');
    proxy.address = server.substr(0, colon);
    proxy.port = colon == std::string_view::npos ? "" : server.substr(colon + 1, longestPort);
}

bool detectProxy(Proxy& proxy) {
    std::array<INTERNET_PER_CONN_OPTIONW, 5> options{};
    options[0].dwOption = INTERNET_PER_CONN_AUTOCONFIG_URL;
    options[1].dwOption = INTERNET_PER_CONN_AUTODISCOVERY_FLAGS;
    options[2].dwOption = INTERNET_PER_CONN_FLAGS;
    options[3].dwOption = INTERNET_PER_CONN_PROXY_BYPASS;
    options[4].dwOption = INTERNET_PER_CONN_PROXY_SERVER;
    INTERNET_PER_CONN_OPTION_LISTW list{};
    list.dwSize = sizeof list;
    list.dwOptionCount = static_cast<DWORD>(options.size());
    list.pOptions = options.data();
    DWORD size = sizeof list;
    if (InternetQueryOptionW(nullptr, INTERNET_OPTION_PER_CONNECTION_OPTION, &list, &size) == FALSE) return false;
    proxy.use = (options[2].Value.dwValue & PROXY_TYPE_PROXY) != 0;
    wchar_t* const server = options[4].Value.pszValue;
    if (proxy.use && server != nullptr) splitProxyServer(fromWide(server, 4096), proxy);
    for (const size_t text : {0U, 3U, 4U})
        if (options[text].Value.pszValue != nullptr) GlobalFree(options[text].Value.pszValue);
    return true;
}

void detectProxyOnce(TCachedMemIniFile& store) {
    if (!store.readBool(section(), proxyKey::firstTime, true)) return;
    Proxy proxy = storedProxy(store);
    if (detectProxy(proxy)) static_cast<void>(storeProxy(store, proxy));  // its password was protected before
    store.writeBool(section(), proxyKey::firstTime, false);
    store.save();
}

}  // namespace glimmer
