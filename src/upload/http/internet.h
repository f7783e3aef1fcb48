#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "upload/http/url.h"

namespace glimmer {

/// What a request sends. Shared: the system may still read it when the one who sent it has given up.
using RequestBytes = std::shared_ptr<const std::vector<uint8_t>>;

/// What can be asked about an answer.
enum class AnswerField : uint8_t { StatusCode, RawHeaders, ContentType, ContentLength, SetCookie, Location };

/// The system's functions for the Internet, each as thin as it can be, so that a test can make any one of them fail.
/// Used by one thread. What fails answers false, 0 or nothing; lastError() and lastResponse() then say why. Text is
/// UTF-8, sizes are bytes, times milliseconds.
class Internet {
public:
    using Handle = std::uintptr_t;  ///< 0: none

    /// Codes of the system that the client itself gives or looks for.
    static constexpr uint32_t timedOut = 12002;
    static constexpr uint32_t wasCancelled = 12017;
    static constexpr uint32_t sendAgain = 12032;
    static constexpr uint32_t headerNotFound = 12150;

    struct Server {
        Protocol protocol = Protocol::Http;
        std::string host;
        uint16_t port = 0;
        std::string user;
        std::string password;
        bool passive = false;  ///< FTP only
    };

    Internet() = default;
    virtual ~Internet() = default;
    Internet(const Internet&) = delete;
    Internet& operator=(const Internet&) = delete;
    Internet(Internet&&) = delete;
    Internet& operator=(Internet&&) = delete;

    /// A session; through that proxy ("host:port"), or directly when it is empty.
    virtual Handle open(const std::string& agent, const std::string& proxy) = 0;
    virtual bool setConnectTimeout(Handle session, uint32_t milliseconds) = 0;
    virtual Handle connect(Handle session, const Server& server) = 0;
    virtual bool setProxyUser(Handle connection, const std::string& user, const std::string& password) = 0;
    virtual bool attemptConnect() = 0;

    /// Switches off the system's own use of HTTP/1.1, and for proxies too if so asked; true when a switch was on and
    /// restoreHttp11() has to follow.
    virtual bool switchOffHttp11(bool forProxies) = 0;
    virtual void restoreHttp11() = 0;
    /// Tells a session that the system's settings have changed.
    virtual void settingsChanged(Handle session) = 0;

    /// A request of version HTTP/1.0 that neither follows redirections by itself nor uses or fills the cache.
    virtual Handle openRequest(Handle connection, const std::string& verb, const std::string& path, bool secure) = 0;
    /// Lines with their ends.
    virtual bool addHeaders(Handle request, const std::string& lines) = 0;
    virtual bool setCookie(const std::string& url, const std::string& name, const std::string& value) = 0;
    /// The whole request at once; the body may be null.
    virtual bool send(Handle request, const RequestBytes& body) = 0;
    /// The request in pieces: its head with the length of the body, its bytes, the end. Not for an
    /// encrypted request through a proxy.
    virtual bool beginSend(Handle request, uint64_t bodySize) = 0;
    /// Writes to a request or to a file of an FTP server. `written` is told now and then how many bytes are under way.
    virtual bool write(Handle target, const RequestBytes& bytes, const std::function<void(size_t)>& written) = 0;
    virtual bool endSend(Handle request) = 0;

    virtual std::optional<uint32_t> queryNumber(Handle request, AnswerField field) = 0;
    /// Bytes that queryText() will need.
    virtual std::optional<uint32_t> queryLength(Handle request, AnswerField field) = 0;
    virtual std::optional<std::string> queryText(Handle request, AnswerField field) = 0;
    /// The next bytes of an answer; an empty piece at its end.
    virtual std::optional<std::vector<uint8_t>> read(Handle request) = 0;

    /// A new file of an FTP server, to be written.
    virtual Handle openRemoteFile(Handle connection, const std::string& path) = 0;
    /// False when the system, or the server at the end of a file, has an objection.
    virtual bool close(Handle handle) = 0;

    [[nodiscard]] virtual uint32_t lastError() const = 0;
    /// What the server said about the last call that failed.
    [[nodiscard]] virtual std::string lastResponse() const = 0;
    /// The system's text for a code; empty when it has none.
    [[nodiscard]] virtual std::string systemText(uint32_t code) const = 0;
};

}  // namespace glimmer
