#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "upload/http/client_failure.h"
#include "upload/http/internet.h"
#include "upload/http/request_body.h"

namespace glimmer {

/// How a request is sent.
enum class RequestKind : uint8_t { Get = 0, Post = 1, FormData = 2, Related = 3 };

/// What a client tells of its work, on the thread that uses it. Each may be empty.
struct ClientListener {
    std::function<void(const std::string& line)> log{};            ///< without secrets
    std::function<void(uint64_t sent, uint64_t total)> sending{};  ///< bytes of a body or a file
    std::function<bool()> cancelled{};                             ///< asked between pieces of longer work
};

/// The one client for everything that leaves the program over a network. It opens a session, connects to one host by
/// FTP, HTTP or HTTPS, sends one request at a time and keeps the whole answer. Synchronous; for the thread that made
/// it. An operation that fails answers false, and failure() has the message for the user, who was not told yet.
class W3Client {
public:
    using HTTP_ARG = HttpArgument;

    /// What upload targets call themselves.
    static constexpr const char* usualAgent = "Mozilla/4.0 (compatible; )";
    static constexpr uint32_t connectTimeout = 5000;  ///< milliseconds
    /// Of an answer, bytes. What is longer is no answer to an upload.
    static constexpr size_t mostAnswerBytes = size_t{8} << 20U;
    static constexpr size_t mostHeaderBytes = size_t{1} << 20U;

    explicit W3Client(std::unique_ptr<Internet> internet, ClientListener listener = {});
    virtual ~W3Client();
    W3Client(const W3Client&) = delete;
    W3Client& operator=(const W3Client&) = delete;
    W3Client(W3Client&&) = delete;
    W3Client& operator=(W3Client&&) = delete;

protected:
    /// On the present connection; each throws what failed, for Request() to catch.
    virtual void MultipartRequest(const std::string& path, MultipartKind kind);
    virtual void PostRequest(const std::string& path);
    virtual void GetRequest(const std::string& path);

public:
    /// Through "host:port" from the next Connect() on; an empty address means directly. An empty user: no
    /// authorization.
    void SetProxy(bool use, const std::string& address, const std::string& user, const std::string& password);

    /// Port 0 is the protocol's own. `passive` is for FTP.
    bool Connect(const std::string& host, uint16_t port, const std::string& user, const std::string& password,
                 Protocol protocol, const std::string& agent = usualAgent, bool passive = true);
    /// Sends a request to "http://..." or "https://...", connects if the present connection leads elsewhere, follows
    /// redirections (redirect.h) and reads the answer. Any status is an answer, except 407: a proxy that lets nobody
    /// through.
    bool Request(const std::string& uri, RequestKind kind);
    /// Over a connection by FTP: writes a local file under that path on the server.
    bool PutFile(const std::string& localPath, const std::string& remotePath);
    /// Closes request, connection and session.
    void Close();

    /// Arguments are sent in the order in which they were added.
    void AddPostArgument(const std::string& name, const std::string& value, bool isFile);
    void ClearPostArguments() { arguments_.clear(); }
    /// One line, "Name: value". What may not be in a header or a cookie makes the next request fail.
    void AddHeader(const std::string& line) { headers_.push_back(line); }
    void AddCookie(const std::string& name, const std::string& value) { cookies_.push_back({name, value}); }
    void ClearHeadersAndCookies();
    /// The body of the next requests of the kind Post, as it stands, instead of the arguments; empty: the arguments.
    void SetPostBody(const std::string& body) { postBody_ = body; }

    [[nodiscard]] const std::vector<uint8_t>& Response() const { return response_; }
    [[nodiscard]] uint32_t QueryStatusCode() const { return status_; }
    [[nodiscard]] const std::string& QueryRawHeader() const { return rawHeaders_; }
    [[nodiscard]] const std::string& QueryContentType() const { return contentType_; }
    [[nodiscard]] uint64_t QueryContentLength() const { return contentLength_; }  ///< 0: the server gave none
    [[nodiscard]] const std::string& QueryCookie() const { return cookie_; }

    /// Of the last operation; false when it went well.
    [[nodiscard]] const ClientFailure& failure() const { return failure_; }

private:
    struct Cookie {
        std::string name;
        std::string value;
    };
    struct Stop {};  // thrown inside, when failure_ says what failed

    bool guarded(const std::function<void()>& action);
    [[nodiscard]] ClientFailure systemFailure(const char* step) const;
    [[noreturn]] void raise(ClientFailure failure, int line);
    /// The system failed.
    [[noreturn]] void fail(const char* step, int line);
    /// Something of ours, or the server, is not as it should be.
    [[noreturn]] void refuse(const std::string& step, const std::string& reason, int line, uint32_t code = 0);
    [[noreturn]] void refuseFile(const std::string& text, int line);
    [[noreturn]] void failFtp(const std::string& path, int line);
    void checkThread() const;
    void log(const std::string& line) const;
    [[nodiscard]] bool cancelled() const { return listener_.cancelled && listener_.cancelled(); }

    void open(const Internet::Server& server, const std::string& agent);
    void connectTo(const Url& url);
    void closeHandle(Internet::Handle& handle);
    void dispatch(const Url& url, RequestKind kind);
    void checkFields();
    void openRequest(const char* verb, const std::string& path);
    void addHeader(const std::string& line);
    void addExtraHeaders();
    void setCookies();
    bool writeBytes(Internet::Handle target, const RequestBytes& bytes, uint64_t before, uint64_t total);
    void sendInPieces(const RequestBytes& body);
    /// Answers the "Location".
    std::string readAnswer();
    bool proxyRefused();
    void readBody();
    std::string queryOptional(AnswerField field, const char* step);
    void putFile(const std::string& localPath, const std::string& remotePath);

    bool useProxy_ = false;
    std::string proxyAddress_;
    std::string proxyUser_;
    std::string proxyPassword_;
    Internet::Handle session_ = 0;
    Internet::Handle connection_ = 0;
    Internet::Handle request_ = 0;
    std::vector<HTTP_ARG> arguments_;
    std::vector<std::string> headers_;
    std::vector<Cookie> cookies_;
    std::string postBody_;
    std::vector<uint8_t> response_;
    uint32_t status_ = 0;
    std::string rawHeaders_;
    std::string contentType_;
    uint64_t contentLength_ = 0;
    std::string cookie_;
    Internet::Server server_;
    std::string agent_ = usualAgent;
    bool elsewhere_ = false;  ///< sent on to another server: what is for the first one stays with us
    ClientFailure failure_;
    std::thread::id thread_ = std::this_thread::get_id();
    std::unique_ptr<Internet> internet_;
    ClientListener listener_;
};

}  // namespace glimmer
