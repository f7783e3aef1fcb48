#include "upload/http/system_internet.h"

#include <algorithm>
#include <functional>
#include <set>
#include <thread>
#include <utility>
#include <vector>

#include "common/wide_text.h"
#include "upload/http/call_thread.h"
#include "upload/http/http11_switches.h"
#include "upload/http/request_fields.h"
#include "upload/http/wininet_calls.h"

namespace glimmer {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr DWORD readAtOnce = DWORD{64} << 10U;
constexpr milliseconds quickly{20};
/// A slow line takes it in well before the time-out.
constexpr size_t writtenAtOnce = size_t{128} << 10U;

HINTERNET native(Internet::Handle handle) { return reinterpret_cast<HINTERNET>(handle); }
Internet::Handle handleOf(HINTERNET handle) { return reinterpret_cast<Internet::Handle>(handle); }

/// The string's length is the size, in characters.
bool setText(HINTERNET handle, DWORD option, const std::string& text) {
    std::wstring wide = toWide(text);
    return InternetSetOptionW(handle, option, wide.data(), static_cast<DWORD>(wide.size())) != FALSE;
}

bool setNumber(HINTERNET handle, DWORD option, DWORD value) {
    return InternetSetOptionW(handle, option, &value, sizeof value) != FALSE;
}

/// In pieces, each of which has the whole time that a call may take.
bool writeAll(HINTERNET target, const std::vector<uint8_t>& bytes, std::atomic<size_t>& moved) {
    for (size_t done = 0; done < bytes.size(); moved = done) {
        const auto piece = static_cast<DWORD>(std::min(writtenAtOnce, bytes.size() - done));
        DWORD written = 0;
        if (InternetWriteFile(target, bytes.data() + done, piece, &written) == FALSE) return false;
        if (written == 0) {
            SetLastError(ERROR_INTERNET_CONNECTION_ABORTED);
            return false;
        }
        done += written;
    }
    return true;
}

/// What is there now: some systems would wait until a piece is full. A few of them together, if they come quickly.
std::optional<std::vector<uint8_t>> readSome(HINTERNET request) {
    const auto start = steady_clock::now();
    std::vector<uint8_t> bytes;
    do {
        DWORD there = 0;
        if (InternetQueryDataAvailable(request, &there, 0, 0) == FALSE) return std::nullopt;
        if (there == 0) break;
        const size_t before = bytes.size();
        bytes.resize(before + std::min(there, readAtOnce));
        DWORD got = 0;
        if (InternetReadFile(request, bytes.data() + before, static_cast<DWORD>(bytes.size() - before), &got) == FALSE)
            return std::nullopt;
        bytes.resize(before + got);
    } while (bytes.size() < readAtOnce && steady_clock::now() - start < quickly);
    return bytes;
}

class SystemInternet : public Internet {
public:
    SystemInternet(std::shared_ptr<const std::atomic<bool>> cancelled, InternetPatience patience)
        : cancelled_(std::move(cancelled)), patience_(patience) {}
    ~SystemInternet() override { abandon(); }

    Handle open(const std::string& agent, const std::string& proxy) override {
        const std::wstring name = toWide(agent);
        const std::wstring through = toWide(proxy);
        const bool direct = proxy.empty();
        return newHandle([name, through, direct] {
            const HINTERNET session =
                InternetOpenW(name.c_str(), direct ? INTERNET_OPEN_TYPE_DIRECT : INTERNET_OPEN_TYPE_PROXY,
                              direct ? nullptr : through.c_str(), nullptr, 0);
            if (session != nullptr) InternetSetStatusCallbackW(session, &ConnectWatch::told);
            return session;
        });
    }

    bool setConnectTimeout(Handle session, uint32_t milliseconds) override {
        return call<bool>([=] { return setNumber(native(session), INTERNET_OPTION_CONNECT_TIMEOUT, milliseconds); });
    }

    Handle connect(Handle session, const Server& server) override {
        const DWORD context = watch_.context();
        return newHandle([=] {
            const bool ftp = server.protocol == Protocol::Ftp;
            const std::wstring user = toWide(server.user);
            const std::wstring password = toWide(server.password);
            return InternetConnectW(native(session), systemHostName(server.host).c_str(), server.port,
                                    user.empty() ? nullptr : user.c_str(), user.empty() ? nullptr : password.c_str(),
                                    ftp ? INTERNET_SERVICE_FTP : INTERNET_SERVICE_HTTP,
                                    ftp && server.passive ? INTERNET_FLAG_PASSIVE : 0, context);
        });
    }

    bool setProxyUser(Handle connection, const std::string& user, const std::string& password) override {
        proxyAuthorization_ = "Proxy-Authorization: " + basicAuthorization(user, password) + "\r\n";
        return call<bool>([=] {
            return setText(native(connection), INTERNET_OPTION_PROXY_USERNAME, user) &&
                   setText(native(connection), INTERNET_OPTION_PROXY_PASSWORD, password);
        });
    }

    bool attemptConnect() override {
        return call<bool>([] {
            const DWORD error = InternetAttemptConnect(0);
            SetLastError(error);
            return error == ERROR_SUCCESS;
        });
    }

    bool switchOffHttp11(bool forProxies) override { return switches_.switchOff(forProxies); }
    void restoreHttp11() override { switches_.restore(); }
    void settingsChanged(Handle session) override {
        call<bool>(
            [=] { return InternetSetOptionW(native(session), INTERNET_OPTION_SETTINGS_CHANGED, nullptr, 0) != FALSE; });
    }

    Handle openRequest(Handle connection, const std::string& verb, const std::string& path, bool secure) override {
        const DWORD_PTR context = watch_.context();
        const auto longest = static_cast<DWORD>(patience_.call.count() * 3 / 2);  // what we say comes first
        return newHandle([=] {
            const DWORD flags = INTERNET_FLAG_NO_AUTO_REDIRECT | INTERNET_FLAG_NO_CACHE_WRITE | INTERNET_FLAG_RELOAD |
                                INTERNET_FLAG_NO_UI | (secure ? INTERNET_FLAG_SECURE : 0);
            const HINTERNET request = HttpOpenRequestW(native(connection), toWide(verb).c_str(), toWide(path).c_str(),
                                                       L"HTTP/1.0", nullptr, nullptr, flags, context);
            // So that a call which nobody waits for any more ends as well.
            for (const DWORD option : {INTERNET_OPTION_RECEIVE_TIMEOUT, INTERNET_OPTION_SEND_TIMEOUT})
                if (request != nullptr) setNumber(request, option, longest);
            return request;
        });
    }

    bool addHeaders(Handle request, const std::string& lines) override {
        const std::wstring text = toWide(lines);
        return call<bool>([=] {
            return HttpAddRequestHeadersW(native(request), text.c_str(), static_cast<DWORD>(text.size()),
                                          HTTP_ADDREQ_FLAG_ADD | HTTP_ADDREQ_FLAG_REPLACE) != FALSE;
        });
    }

    bool setCookie(const std::string& url, const std::string& name, const std::string& value) override {
        return call<bool>([url = toWide(url), name = toWide(name), value = toWide(value)] {
            return InternetSetCookieW(url.c_str(), name.c_str(), value.c_str()) != FALSE;
        });
    }

    bool send(Handle request, const RequestBytes& body) override {
        return call<bool>([=] {
            auto* const data = body ? const_cast<uint8_t*>(body->data()) : nullptr;  // the system only reads it
            return HttpSendRequestW(native(request), nullptr, 0, data, body ? static_cast<DWORD>(body->size()) : 0) !=
                   FALSE;
        });
    }

    bool beginSend(Handle request, uint64_t bodySize) override {
        // The proxy's credentials are on the connection, but not every system sends them with a request in pieces.
        if (!proxyAuthorization_.empty() && !addHeaders(request, proxyAuthorization_)) return false;
        return call<bool>([=] {
            INTERNET_BUFFERSW buffers{};
            buffers.dwStructSize = sizeof buffers;
            buffers.dwBufferTotal = static_cast<DWORD>(bodySize);
            return HttpSendRequestExW(native(request), &buffers, nullptr, 0, 0) != FALSE;
        });
    }

    bool write(Handle target, const RequestBytes& bytes, const std::function<void(size_t)>& written) override {
        const auto moved = std::make_shared<std::atomic<size_t>>(0);
        size_t seen = 0;
        const auto moves = [&, moved] {
            const size_t now = *moved;
            if (now == seen) return false;
            written(seen = now);
            return true;
        };
        const bool done = call<bool>([=] { return writeAll(native(target), *bytes, *moved); }, {}, false, moves);
        if (done) written(bytes->size());
        return done;
    }

    bool endSend(Handle request) override {
        return call<bool>([=] { return HttpEndRequestW(native(request), nullptr, 0, 0) != FALSE; });
    }

    std::optional<uint32_t> queryNumber(Handle request, AnswerField field) override {
        return call<std::optional<uint32_t>>([=]() -> std::optional<uint32_t> {
            DWORD number = 0;
            DWORD size = sizeof number;
            if (HttpQueryInfoW(native(request), infoFlag(field), &number, &size, nullptr) == FALSE) return std::nullopt;
            return number;
        });
    }
    std::optional<uint32_t> queryLength(Handle request, AnswerField field) override {
        return call<std::optional<uint32_t>>([=] { return answerLength(native(request), field); });
    }
    std::optional<std::string> queryText(Handle request, AnswerField field) override {
        return call<std::optional<std::string>>([=] { return answerText(native(request), field); });
    }

    std::optional<std::vector<uint8_t>> read(Handle request) override {
        if (!reading_) reading_ = steady_clock::now();
        return call<std::optional<std::vector<uint8_t>>>([=] { return readSome(native(request)); });
    }

    Handle openRemoteFile(Handle connection, const std::string& path) override {
        const DWORD_PTR context = watch_.context();
        const Handle file = newHandle([=] {
            return FtpOpenFileW(native(connection), toWide(path).c_str(), GENERIC_WRITE, FTP_TRANSFER_TYPE_BINARY,
                                context);
        });
        remoteFile_ = file;
        return file;
    }

    bool close(Handle handle) override {
        reading_.reset();
        if (handles_.erase(handle) == 0) return true;  // one that was given up
        const bool isFile = handle == remoteFile_;
        if (isFile) remoteFile_ = 0;
        return call<bool>(
            [=] {
                if (InternetCloseHandle(native(handle)) == FALSE) return false;
                const bool refused = isFile && !ftpObjection().empty();
                if (refused) SetLastError(ERROR_INTERNET_EXTENDED_ERROR);
                return !refused;
            },
            {}, true);
    }

    [[nodiscard]] uint32_t lastError() const override { return error_; }
    [[nodiscard]] std::string lastResponse() const override { return response_; }
    [[nodiscard]] std::string systemText(uint32_t code) const override { return wininetText(code); }

private:
    template <class T>
    struct Answer {
        T value{};
        uint32_t error = ERROR_OUTOFMEMORY;
        std::string response;
    };

    template <class T>
    T call(std::function<T()> action, std::function<void(T)> late = {}, bool closing = false,
           const std::function<bool()>& moves = {}) {
        if (isCancelled() && !closing) {
            error_ = wasCancelled;
            response_.clear();
            return T{};
        }
        if (!thread_) thread_ = std::make_unique<CallThread>();
        const auto answer = std::make_shared<Answer<T>>();
        auto start = steady_clock::now();
        const bool done = thread_->run(
            [answer, action = std::move(action)]() noexcept {
                try {
                    SetLastError(ERROR_SUCCESS);
                    answer->value = action();
                    answer->error = GetLastError();
                    if (!answer->value) answer->response = lastServerResponse();
                } catch (...) {
                    answer->value = T{};  // not enough memory
                }
            },
            [answer, late = std::move(late)] {
                if (late) late(answer->value);
            },
            [&] {
                if (moves && moves()) start = steady_clock::now();
                return isOver(start);
            });
        error_ = done ? answer->error : isCancelled() ? wasCancelled : timedOut;
        response_ = done ? answer->response : std::string();
        if (!done) abandon();
        return done ? std::move(answer->value) : T{};
    }

    Handle newHandle(std::function<HINTERNET()> action) {
        const HINTERNET handle = call<HINTERNET>(std::move(action), [](HINTERNET late) {
            if (late != nullptr) InternetCloseHandle(late);
        });
        if (handle != nullptr) handles_.insert(handleOf(handle));
        if (handle != nullptr) order_.push_back(handleOf(handle));
        return handleOf(handle);
    }

    [[nodiscard]] bool isCancelled() const { return cancelled_ && *cancelled_; }

    [[nodiscard]] bool isOver(steady_clock::time_point start) const {
        const auto now = steady_clock::now();
        return isCancelled() || now - start > patience_.call ||
               milliseconds(watch_.connectingFor()) > patience_.connect ||
               (reading_ && now - *reading_ > patience_.answer);
    }

    /// Closes what is open, innermost first. A call that is still under way ends of that where the system can do it.
    /// Closing may wait as well, so a thread of its own does it.
    void abandon() {
        std::vector<HINTERNET> open;
        for (auto handle = order_.rbegin(); handle != order_.rend(); ++handle)
            if (handles_.erase(*handle) != 0) open.push_back(native(*handle));
        order_.clear();
        thread_.reset();
        reading_.reset();
        if (open.empty()) return;
        std::thread([open = std::move(open)] {
            for (const HINTERNET handle : open) InternetCloseHandle(handle);
        }).detach();
    }

    std::shared_ptr<const std::atomic<bool>> cancelled_;
    InternetPatience patience_;
    ConnectWatch watch_;
    Http11Switches switches_;
    std::unique_ptr<CallThread> thread_;
    std::set<Handle> handles_;   ///< open
    std::vector<Handle> order_;  ///< in which they were made
    Handle remoteFile_ = 0;
    std::string proxyAuthorization_;
    std::optional<steady_clock::time_point> reading_;  ///< since when an answer is read
    uint32_t error_ = 0;
    std::string response_;
};

}  // namespace

std::unique_ptr<Internet> systemInternet(std::shared_ptr<const std::atomic<bool>> cancelled,
                                         InternetPatience patience) {
    return std::make_unique<SystemInternet>(std::move(cancelled), patience);
}

}  // namespace glimmer
