// The requests of W3Client: what is sent, in which order, and how the answer is read.

#include <charconv>
#include <filesystem>
#include <fstream>
#include <utility>

#include "common/files.h"
#include "common/text.h"
#include "upload/http/request_fields.h"
#include "upload/http/w3_client.h"
#include "upload/http/w3_client_steps.h"

namespace glimmer {

namespace {

constexpr size_t pieceSize = size_t{1} << 20U;  // of a file that goes to an FTP server
constexpr int mostAttempts = 3;  // of a server or a proxy that wants the request again, with another authorization

uint64_t numberIn(const std::string& text) {
    uint64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// Puts the system's switches back, whatever happens.
class Http11Off {
public:
    Http11Off(Internet& internet, Internet::Handle session, bool forProxies)
        : internet_(internet), session_(session), changed_(internet.switchOffHttp11(forProxies)) {
        if (changed_) internet_.settingsChanged(session_);
    }
    ~Http11Off() {
        if (!changed_) return;
        internet_.restoreHttp11();
        internet_.settingsChanged(session_);
    }
    Http11Off(const Http11Off&) = delete;
    Http11Off& operator=(const Http11Off&) = delete;
    Http11Off(Http11Off&&) = delete;
    Http11Off& operator=(Http11Off&&) = delete;

private:
    Internet& internet_;
    Internet::Handle session_;
    bool changed_;
};

}  // namespace

void W3Client::openRequest(const char* verb, const std::string& path) {
    if (connection_ == 0) refuse("handle not opened...", "", __LINE__);
    const Http11Off off(*internet_, session_, useProxy_);
    request_ = internet_->openRequest(connection_, verb, path, server_.protocol == Protocol::Https);
    if (request_ == 0) fail(requestFailed, __LINE__);
}

void W3Client::addHeader(const std::string& line) {
    if (!internet_->addHeaders(request_, line + "\r\n")) fail("additional header failed...", __LINE__);
}

/// What the caller added is for the server that he named.
void W3Client::addExtraHeaders() {
    if (elsewhere_) return;
    for (const std::string& line : headers_) {
        log("Headers: " + line);
        addHeader(line);
    }
}

void W3Client::setCookies() {
    if (elsewhere_) return;
    const std::string server = serverOf({server_.protocol, server_.host, server_.port});
    for (const Cookie& cookie : cookies_)
        if (!internet_->setCookie(server, cookie.name, cookie.value)) fail("add cookie failed...", __LINE__);
}

void W3Client::GetRequest(const std::string& path) {
    openRequest("GET", path);
    addHeader("Accept: */*");
    setCookies();
    addExtraHeaders();
    log("Sending request...");
    if (!internet_->send(request_, nullptr)) fail(requestFailed, __LINE__);
}

void W3Client::PostRequest(const std::string& path) {
    openRequest("POST", path);
    addExtraHeaders();
    addHeader("Content-Type: application/x-www-form-urlencoded");
    setCookies();
    const std::string body = postBody_.empty() ? urlEncodedBody(arguments_) : postBody_;
    log("Post data: " + body);
    log("Sending request...");
    if (!internet_->send(request_, std::make_shared<const std::vector<uint8_t>>(body.begin(), body.end())))
        fail(requestFailed, __LINE__);
}

void W3Client::MultipartRequest(const std::string& path, MultipartKind kind) {
    const std::string boundary = makeBoundary();
    log("Opening request");
    openRequest("POST", path);
    log("hRequest = " + std::to_string(request_));
    addHeader("Content-Type: " + std::string(contentTypeOf(kind)) + "; boundary=" + boundary);
    addHeader("Accept: */*");
    addExtraHeaders();
    setCookies();
    log("Allocating multipart data.");
    const Result<MultipartBody> plan = MultipartBody::plan(arguments_, kind, boundary);
    if (!plan) refuseFile(plan.message(), __LINE__);
    Result<std::vector<uint8_t>> body = plan->write([this] { return !cancelled(); });
    if (!body) refuseFile(body.message(), __LINE__);
    log("Allocated buffer " + std::to_string(body->size()) + " bytes length.");
    log("Post multipart data.");
    addHeader("Content-Length: " + std::to_string(body->size()));
    log("Sending request...");
    const auto bytes = std::make_shared<const std::vector<uint8_t>>(body.take());
    // Not every system makes an encrypted connection through a proxy for a request in pieces.
    const bool whole = useProxy_ && server_.protocol == Protocol::Https;
    if (!whole) return sendInPieces(bytes);
    if (listener_.sending) listener_.sending(0, bytes->size());
    if (!internet_->send(request_, bytes)) fail(requestFailedInPieces, __LINE__);
}

bool W3Client::writeBytes(Internet::Handle target, const RequestBytes& bytes, uint64_t before, uint64_t total) {
    return internet_->write(target, bytes, [this, before, total](size_t sent) {
        if (listener_.sending) listener_.sending(before + sent, total);
    });
}

void W3Client::sendInPieces(const RequestBytes& body) {
    for (int attempt = 1;; ++attempt) {
        if (!internet_->beginSend(request_, body->size())) fail(requestFailedInPieces, __LINE__);
        if (!writeBytes(request_, body, 0, body->size())) {
            // A server that refuses what it has seen so far answers and reads no further.
            ClientFailure broken = systemFailure(requestFailedInPieces);
            const bool over = broken.cancelled || broken.code == Internet::timedOut;
            if (!over && internet_->endSend(request_) &&
                internet_->queryNumber(request_, AnswerField::StatusCode).value_or(0) >= 400)
                return;
            raise(std::move(broken), __LINE__);
        }
        if (internet_->endSend(request_)) return;
        if (internet_->lastError() != Internet::sendAgain || attempt == mostAttempts)
            fail(requestFailedInPieces, __LINE__);
    }
}

std::string W3Client::queryOptional(AnswerField field, const char* step) {
    std::optional<std::string> text = internet_->queryText(request_, field);
    if (text) return std::move(*text);
    if (internet_->lastError() != Internet::headerNotFound) fail(step, __LINE__);
    return {};
}

/// Some proxies refuse a password as a server would, with 401; what came from a server has a mark of the proxy.
bool W3Client::proxyRefused() {
    if (status_ == proxyRefuses) return true;
    if (status_ != 401 || !useProxy_ || proxyUser_.empty()) return false;
    const std::string raw = lowerAscii(internet_->queryText(request_, AnswerField::RawHeaders).value_or(""));
    return raw.find("\nvia:") == std::string::npos;
}

std::string W3Client::readAnswer() {
    response_.clear();
    const std::optional<uint32_t> status = internet_->queryNumber(request_, AnswerField::StatusCode);
    if (!status) fail("query staus code failed...", __LINE__);
    status_ = *status;
    if (status_ == 0) refuse("response failed...", "The server closed the connection without an answer.", __LINE__);
    if (proxyRefused())
        refuse("connection failed...",
               useProxy_ && !proxyUser_.empty()
                   ? "The proxy server, or a server behind it, refuses the user name or the password. Those for the "
                     "proxy are in the proxy settings."
                   : "The proxy server asks for a user name and a password. Enter them in the proxy settings.",
               __LINE__, proxyRefuses);
    const std::optional<uint32_t> length = internet_->queryLength(request_, AnswerField::RawHeaders);
    if (!length) fail("query raw header length failed...", __LINE__);
    if (*length > mostHeaderBytes)
        refuse("query raw header failed...", "The head of the server's answer is too long.", __LINE__);
    std::optional<std::string> raw = internet_->queryText(request_, AnswerField::RawHeaders);
    if (!raw) fail("query raw header failed...", __LINE__);
    rawHeaders_ = std::move(*raw);
    const std::string contentLength = queryOptional(AnswerField::ContentLength, "query content-length failed...");
    contentLength_ = numberIn(contentLength);
    contentType_ = queryOptional(AnswerField::ContentType, "query content-type failed...");
    cookie_ = queryOptional(AnswerField::SetCookie, "query cookie failed...");
    std::string location = queryOptional(AnswerField::Location, "query raw header failed...");
    readBody();
    closeHandle(request_);
    return location;
}

void W3Client::readBody() {
    for (;;) {
        const std::optional<std::vector<uint8_t>> piece = internet_->read(request_);
        if (!piece) fail("response failed...", __LINE__);
        if (piece->empty()) break;
        if (piece->size() > mostAnswerBytes - response_.size()) {
            response_.clear();
            refuse("response failed...", "The server's answer is longer than 8 MiB.", __LINE__);
        }
        response_.insert(response_.end(), piece->begin(), piece->end());
    }
    // The system takes the end of the connection for the end of the answer.
    const bool hasBody = status_ >= 200 && status_ != 204 && status_ != 304;
    if (hasBody && response_.size() < contentLength_)
        refuse("response failed...", "The server closed the connection before its answer was complete.", __LINE__);
}

bool W3Client::PutFile(const std::string& localPath, const std::string& remotePath) {
    const bool done = guarded([&] { putFile(localPath, remotePath); });
    if (!done) Close();
    return done;
}

void W3Client::putFile(const std::string& localPath, const std::string& remotePath) {
    if (connection_ == 0) refuse("handle not opened...", "", __LINE__);
    if (const Status name = checkFieldName(remotePath); !name) refuse(requestFailed, name.message(), __LINE__);
    const std::filesystem::path path = pathFromUtf8(localPath);
    std::error_code error;
    const uint64_t size = std::filesystem::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    if (error || !file) refuseFile(unreadableFile(localPath).message, __LINE__);
    request_ = internet_->openRemoteFile(connection_, remotePath);
    if (request_ == 0) fail(requestFailed, __LINE__);
    log("Stream size: " + std::to_string(size));
    for (uint64_t sent = 0; sent < size;) {
        std::vector<uint8_t> piece(static_cast<size_t>(std::min<uint64_t>(pieceSize, size - sent)));
        file.read(reinterpret_cast<char*>(piece.data()), static_cast<std::streamsize>(piece.size()));
        if (static_cast<size_t>(file.gcount()) != piece.size()) refuseFile(unreadableFile(localPath).message, __LINE__);
        const uint64_t before = sent;
        sent += piece.size();
        if (!writeBytes(request_, std::make_shared<const std::vector<uint8_t>>(std::move(piece)), before, size))
            failFtp(localPath, __LINE__);
    }
    // The server says only now whether it has kept the file.
    const bool kept = internet_->close(std::exchange(request_, 0));
    if (!kept) failFtp(localPath, __LINE__);
    log("FTP put complete");
}

void W3Client::failFtp(const std::string& path, int line) {
    ClientFailure failure = systemFailure("");
    failure.step = "FTP: error writing file " + path;
    failure.text = errorReport(failure.step, failure.reason, failure.code, internet_->lastResponse());
    failure.caption = "Error";
    raise(std::move(failure), line);
}

}  // namespace glimmer
