#include "upload/http/w3_client.h"

#include <istream>
#include <new>
#include <utility>

#include "common/assertion.h"
#include "upload/http/log_mask.h"
#include "upload/http/redirect.h"
#include "upload/http/request_fields.h"
#include "upload/http/w3_client_steps.h"

namespace glimmer {

W3Client::W3Client(std::unique_ptr<Internet> internet, ClientListener listener)
    : internet_(std::move(internet)), listener_(std::move(listener)) {}

W3Client::~W3Client() { Close(); }

void W3Client::checkThread() const {
    GLIMMER_ASSERT(std::this_thread::get_id() == thread_, "this_thread==thread_", "W3Client");
}

void W3Client::log(const std::string& line) const {
    if (listener_.log) listener_.log(maskedForLog(line));
}

void W3Client::raise(ClientFailure failure, int line) {
    log(failure.step + " (line " + std::to_string(line) + ")");
    failure_ = std::move(failure);
    throw Stop{};
}

ClientFailure W3Client::systemFailure(const char* step) const {
    const uint32_t code = internet_->lastError();
    ClientFailure failure{
        step, reasonFor(code, internet_->systemText(code)), code, "", systemCaption, code == Internet::wasCancelled};
    failure.text = errorReport(failure.step, failure.reason, code, internet_->lastResponse());
    return failure;
}

void W3Client::fail(const char* step, int line) { raise(systemFailure(step), line); }

void W3Client::refuse(const std::string& step, const std::string& reason, int line, uint32_t code) {
    raise({step, reason, code, reason.empty() ? step : step + "\r\n\r\n" + reason, systemCaption,
           code == Internet::wasCancelled},
          line);
}

void W3Client::refuseFile(const std::string& text, int line) {
    if (cancelled()) refuse(requestFailedInPieces, ownReason(Internet::wasCancelled), line, Internet::wasCancelled);
    raise({text, text, 0, text, "Error", false}, line);
}

bool W3Client::guarded(const std::function<void()>& action) {
    checkThread();
    failure_ = {};
    const char* reason = "";
    try {
        action();
        return true;
    } catch (const Stop&) {
        return false;
    } catch (const std::bad_alloc&) {
        reason = "There is not enough memory for this.";
    } catch (...) {
        reason = "An internal error occurred.";
    }
    failure_ = {unknownException, reason, 0, std::string(unknownException) + "\r\n\r\n" + reason, systemCaption, false};
    return false;
}

void W3Client::SetProxy(bool use, const std::string& address, const std::string& user, const std::string& password) {
    useProxy_ = use;
    proxyAddress_ = address;
    proxyUser_ = user;
    proxyPassword_ = password;
}

bool W3Client::Connect(const std::string& host, uint16_t port, const std::string& user, const std::string& password,
                       Protocol protocol, const std::string& agent, bool passive) {
    const bool done = guarded([&] {
        open({protocol, host, port != 0 ? port : defaultPort(protocol), user, password, passive}, agent);
    });
    if (!done) Close();
    return done;
}

void W3Client::open(const Internet::Server& server, const std::string& agent) {
    Close();
    server_ = server;
    agent_ = agent;
    log("\r\n----------------------------\r\nConnecting to: " + server.host);
    log(std::string("Using proxy: ") + (useProxy_ ? "Yes" : "No"));
    log("Connecting to host...");
    for (const std::string* text : {&server.host, &server.user, &server.password, &agent})
        if (!checkFieldName(*text))
            refuse("connect failed...", "The server's name, the user's or the password has a line break in it.",
                   __LINE__);
    session_ = internet_->open(agent, useProxy_ ? proxyAddress_ : "");
    if (session_ == 0) fail("open internet failed...", __LINE__);
    if (!internet_->setConnectTimeout(session_, connectTimeout)) fail("connect failed...", __LINE__);
    connection_ = internet_->connect(session_, server);
    if (connection_ == 0) fail("connect failed...", __LINE__);
    if (useProxy_ && !proxyUser_.empty() && !internet_->setProxyUser(connection_, proxyUser_, proxyPassword_))
        fail("connection failed...", __LINE__);
    if (!internet_->attemptConnect()) fail("connection failed...", __LINE__);
}

void W3Client::closeHandle(Internet::Handle& handle) {
    if (handle != 0) internet_->close(handle);
    handle = 0;
}

void W3Client::Close() {
    closeHandle(request_);
    closeHandle(connection_);
    closeHandle(session_);
}

void W3Client::AddPostArgument(const std::string& name, const std::string& value, bool isFile) {
    arguments_.push_back({name, value, isFile});
}

void W3Client::ClearHeadersAndCookies() {
    headers_.clear();
    cookies_.clear();
}

bool W3Client::Request(const std::string& uri, RequestKind kind) {
    checkThread();
    log("Uri: " + uri);
    const bool done = guarded([&] {
        const Result<Url> url = parseUrl(uri);
        if (!url) refuse(requestFailed, url.message(), __LINE__);
        if (url->protocol == Protocol::Ftp) refuse(requestFailed, "A request cannot go to an FTP server.", __LINE__);
        checkFields();
        dispatch(*url, kind);
    });
    if (!done) Close();
    log(done ? "Request complete" : "Request failed");
    return done;
}

void W3Client::checkFields() {
    for (std::string& line : headers_) {
        Result<std::string> header = checkedHeader(line);
        if (!header) refuse("additional header failed...", header.message(), __LINE__);
        line = header.take();
    }
    for (const Cookie& cookie : cookies_)
        if (const Status good = checkCookie(cookie.name, cookie.value); !good)
            refuse("add cookie failed...", good.message(), __LINE__);
}

/// The connection that is there serves when it leads to the same server, for whoever it was made.
void W3Client::connectTo(const Url& url) {
    const bool same = connection_ != 0 && server_.host == url.host && server_.port == url.port &&
                      server_.protocol == url.protocol && (url.user.empty() || server_.user == url.user);
    if (!same) open({url.protocol, url.host, url.port, url.user, url.password, false}, agent_);
}

void W3Client::dispatch(const Url& url, RequestKind kind) {
    Url at = url;
    elsewhere_ = false;
    for (int steps = 0;; ++steps) {
        connectTo(at);
        switch (kind) {
            case RequestKind::Get:
                GetRequest(at.path);
                break;
            case RequestKind::Post:
                PostRequest(at.path);
                break;
            case RequestKind::FormData:
                MultipartRequest(at.path, MultipartKind::FormData);
                break;
            case RequestKind::Related:
                MultipartRequest(at.path, MultipartKind::Related);
                break;
        }
        const std::string location = readAnswer();
        Result<std::optional<Url>> target = redirectTarget(at, kind != RequestKind::Get, status_, location);
        if (!target) refuse(requestFailed, target.message(), __LINE__);
        if (!*target) return;
        if (steps == mostRedirects) refuse(requestFailed, "The server sends the request on too often.", __LINE__);
        log("Redirected to: " + serverOf(**target));
        elsewhere_ = elsewhere_ || serverOf(**target) != serverOf(at);
        at = **target;
        kind = RequestKind::Get;
    }
}

}  // namespace glimmer
