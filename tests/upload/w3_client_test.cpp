// The client over a system of the test's own, in which any one step can be made to fail.

#include <gtest/gtest.h>

#include <set>

#include "common/files.h"
#include "support/scratch_folder.h"
#include "upload/http/w3_client.h"

using namespace glimmer;

namespace {

/// Writes down what it is told, hands out handles and counts those that are open.
struct World {
    std::string failing;  ///< the call that fails
    uint32_t error = 12030;
    uint32_t status = 200;
    std::string location;
    std::string length;
    std::string answer = "http://a.b/link";
    size_t answers = 1;  ///< how often that is sent
    int timesAgain = 0;  ///< the server wants the request again
    bool switchesOn = true;

    std::string calls;
    std::string sent;
    std::string server;
    std::set<Internet::Handle> open;
    int switchedOff = 0;
};

class FakeInternet : public Internet {
public:
    explicit FakeInternet(World& world) : world_(world) {}

    Handle open(const std::string& agent, const std::string& proxy) override {
        return handle("open", agent + "|" + proxy);
    }
    bool setConnectTimeout(Handle, uint32_t time) override { return call("timeout", std::to_string(time)); }
    Handle connect(Handle, const Server& to) override {
        world_.server = to.host + ":" + std::to_string(to.port) + (to.passive ? " passive" : "");
        return handle("connect", "");
    }
    bool setProxyUser(Handle, const std::string& user, const std::string&) override { return call("proxy", user); }
    bool attemptConnect() override { return call("attempt", ""); }
    bool switchOffHttp11(bool) override {
        world_.switchedOff += world_.switchesOn ? 1 : 0;
        return world_.switchesOn;
    }
    void restoreHttp11() override { --world_.switchedOff; }
    void settingsChanged(Handle) override {}
    Handle openRequest(Handle, const std::string& verb, const std::string& path, bool) override {
        EXPECT_EQ(world_.switchedOff, world_.switchesOn ? 1 : 0) << "the request is opened between the switches";
        return handle("request", verb + " " + path);
    }
    bool addHeaders(Handle, const std::string& lines) override { return call("header", lines); }
    bool setCookie(const std::string& url, const std::string& name, const std::string& value) override {
        return call("cookie", url + " " + name + "=" + value);
    }
    bool send(Handle, const RequestBytes& body) override {
        if (body) world_.sent.append(body->begin(), body->end());
        return call("send", "");
    }
    bool beginSend(Handle, uint64_t) override { return call("begin", ""); }
    bool write(Handle, const RequestBytes& bytes, const std::function<void(size_t)>& written) override {
        world_.sent.append(bytes->begin(), bytes->end());
        written(bytes->size());
        return call("write", "");
    }
    bool endSend(Handle) override {
        lastError_ = sendAgain;
        return world_.timesAgain-- <= 0 && call("end", "");
    }
    std::optional<uint32_t> queryNumber(Handle, AnswerField) override {
        return call("status", "") ? std::optional(world_.status) : std::nullopt;
    }
    std::optional<uint32_t> queryLength(Handle, AnswerField) override {
        return call("headlength", "") ? std::optional(10U) : std::nullopt;
    }
    std::optional<std::string> queryText(Handle, AnswerField field) override {
        static constexpr const char* names[] = {"", "rawhead", "type", "length", "setcookie", "location"};
        if (!call(names[static_cast<size_t>(field)], "")) return std::nullopt;
        const std::string text = field == AnswerField::Location        ? world_.location
                                 : field == AnswerField::ContentLength ? world_.length
                                                                       : "text/plain";
        lastError_ = headerNotFound;
        return text.empty() ? std::nullopt : std::optional(text);
    }
    std::optional<std::vector<uint8_t>> read(Handle) override {
        if (!call("read", "")) return std::nullopt;
        if (world_.answers == 0) return std::vector<uint8_t>();
        --world_.answers;
        return std::vector<uint8_t>(world_.answer.begin(), world_.answer.end());
    }
    Handle openRemoteFile(Handle, const std::string& path) override { return handle("remote", path); }
    bool close(Handle handle) override {
        EXPECT_EQ(world_.open.erase(handle), 1U) << "closed twice, or never opened";
        return call("close", "");
    }
    uint32_t lastError() const override { return lastError_; }
    std::string lastResponse() const override { return "said the server"; }
    std::string systemText(uint32_t code) const override { return code == 12030 ? "Broken off.\r\n" : ""; }

private:
    bool call(const std::string& name, const std::string& details) {
        world_.calls += name + (details.empty() ? "" : " " + details) + ";";
        lastError_ = world_.error;
        return world_.failing != name;
    }
    Handle handle(const std::string& name, const std::string& details) {
        if (!call(name, details)) return 0;
        world_.open.insert(++last_);
        return last_;
    }

    World& world_;
    Handle last_ = 0;
    uint32_t lastError_ = 0;
};

/// A client with something of everything, and a request of one kind.
struct Session {
    explicit Session(World& world)
        : client(std::make_unique<FakeInternet>(world),
                 {.log = [this](const std::string& line) { log += line + "\n"; }}) {
        client.SetProxy(true, "proxy:8080", "me", "secret");
        client.AddHeader("Authorization: secret");
        client.AddCookie("sid", "secret");
        client.AddPostArgument("password", "secret", false);
    }
    bool request(RequestKind kind, const std::string& uri = "http://a.b/x") { return client.Request(uri, kind); }

    std::string log;
    W3Client client;
};

}  // namespace

TEST(W3Client, SaysWhichStepFailedAndLeavesNothingOpen) {
    struct Case {
        const char* call;
        RequestKind kind;
        const char* message;
    };
    const RequestKind get = RequestKind::Get;
    const RequestKind multipart = RequestKind::Related;
    for (const Case& c : std::initializer_list<Case>{{"open", get, "open internet failed..."},
                                                     {"connect", get, "connect failed..."},
                                                     {"proxy", get, "connection failed..."},
                                                     {"attempt", get, "connection failed..."},
                                                     {"request", get, "request failed..."},
                                                     {"header", get, "additional header failed..."},
                                                     {"cookie", get, "add cookie failed..."},
                                                     {"send", get, "request failed..."},
                                                     {"send", RequestKind::Post, "request failed..."},
                                                     {"status", get, "query staus code failed..."},
                                                     {"headlength", get, "query raw header length failed..."},
                                                     {"rawhead", get, "query raw header failed..."},
                                                     {"type", get, "query content-type failed..."},
                                                     {"length", get, "query content-length failed..."},
                                                     {"setcookie", get, "query cookie failed..."},
                                                     {"read", get, "response failed..."},
                                                     {"begin", multipart, "request failed"},
                                                     {"write", multipart, "request failed"},
                                                     {"end", multipart, "request failed"}}) {
        World world;
        world.failing = c.call;
        {
            Session run(world);
            EXPECT_FALSE(run.request(c.kind)) << c.call;
            EXPECT_EQ(run.client.failure().text,
                      std::string(c.message) + "\r\n\r\nBroken off.\r\n\r\n[12030] - said the server");
            EXPECT_EQ(run.client.failure().caption, "*** Error ***");
            EXPECT_NE(run.log.find(std::string(c.message) + " (line "), std::string::npos) << run.log;
            EXPECT_TRUE(run.log.ends_with("Request failed\n"));
            EXPECT_EQ(run.log.find("secret"), std::string::npos) << run.log;
        }
        EXPECT_TRUE(world.open.empty()) << c.call;
        EXPECT_EQ(world.switchedOff, 0) << c.call;
    }
}

TEST(W3Client, SendsEachKindInItsOrder) {
    World world;
    Session run(world);
    ASSERT_TRUE(run.request(RequestKind::Post)) << run.client.failure().text;
    EXPECT_EQ(world.calls.substr(0, world.calls.find("status")),
              "open Mozilla/4.0 (compatible; )|proxy:8080;timeout 5000;connect;proxy me;attempt;request POST /x;"
              "header Authorization: secret\r\n;header Content-Type: application/x-www-form-urlencoded\r\n;"
              "cookie http://a.b sid=secret;send;");
    EXPECT_EQ(world.sent, "password=secret");
    EXPECT_EQ(run.client.Response(), std::vector<uint8_t>(world.answer.begin(), world.answer.end()));
    EXPECT_EQ(world.open.size(), 2U) << "the connection stays for the next request";

    world.calls.clear();
    run.client.SetPostBody("as it stands");
    ASSERT_TRUE(run.request(RequestKind::Post, "http://a.b/y"));
    EXPECT_EQ(world.calls.find("connect"), std::string::npos);
    EXPECT_EQ(world.sent, "password=secretas it stands");
    ASSERT_TRUE(run.request(RequestKind::FormData, "https://a.b/x"));
    EXPECT_EQ(world.calls.find("begin"), std::string::npos) << "through a proxy it goes in one piece";
    run.client.Close();
    run.client.SetProxy(false, "", "", "");
    world.switchesOn = false;
    for (const char* boundary : {"first", "second"}) {
        world.timesAgain = 1;
        world.sent.clear();
        ASSERT_TRUE(run.request(RequestKind::FormData, "https://a.b/x")) << boundary << run.client.failure().text;
        const std::string once = world.sent.substr(0, world.sent.size() / 2);
        EXPECT_EQ(world.sent, once + once) << "sent again when the server wants that";
        EXPECT_NE(world.calls.find("header Content-Length: " + std::to_string(once.size()) + "\r\n"),
                  std::string::npos);
    }
    EXPECT_EQ(world.server, "a.b:443");
    EXPECT_EQ(run.log.find("secret"), std::string::npos) << run.log;
    for (const char* line : {"Uri: http://a.b/x\n", "\r\n----------------------------\r\nConnecting to: a.b\n",
                             "Using proxy: Yes\n", "Connecting to host...\n", "Post data: password=***\n",
                             "Opening request\nhRequest = ", "Allocating multipart data.\nAllocated buffer ",
                             "Post multipart data.\nSending request...\nRequest complete\n"})
        EXPECT_NE(run.log.find(line), std::string::npos) << line;
}

TEST(W3Client, TakesNoAnswerThatIsNone) {
    struct Case {
        const char* what;
        void (*set)(World&);
        const char* says;
    };
    for (const Case& c : std::initializer_list<Case>{
             {"too long", [](World& w) { w.answer.assign(1 << 20, 'x'), w.answers = 9; }, "longer than 8 MiB"},
             {"cut off", [](World& w) { w.length = "16"; }, "before its answer was complete"},
             {"no way through", [](World& w) { w.status = 407; }, "refuses the user name or the password"},
             {"to HTTP", [](World& w) { w.status = 302, w.location = "http://a.b/"; }, "without encryption"},
             {"in circles", [](World& w) { w.status = 302, w.location = "/x"; }, "too often"},
             {"a certificate", [](World& w) { w.failing = "send", w.error = 12038; },
              "belongs to another server. Nothing was sent."}}) {
        World world;
        c.set(world);
        Session run(world);
        EXPECT_FALSE(run.request(RequestKind::Get, "https://a.b/x")) << c.what;
        EXPECT_NE(run.client.failure().text.find(c.says), std::string::npos) << run.client.failure().text;
        EXPECT_TRUE(world.open.empty());
    }
    World world;
    world.status = 302;
    world.location = "https://other.c/y";
    Session run(world);
    EXPECT_FALSE(run.request(RequestKind::Post, "https://a.b/x")) << "goes on for ever there";
    const size_t second = world.calls.find("request GET /y");
    ASSERT_NE(second, std::string::npos);
    EXPECT_EQ(world.calls.find("secret", second), std::string::npos) << "what is for one server is told to no other";
}

TEST(W3Client, KeepsLinesOfItsOwnOutOfRequests) {
    for (const auto& spoil : std::initializer_list<void (*)(W3Client&)>{
             [](W3Client& c) { c.AddHeader("X: y\r\nHost: evil"); }, [](W3Client& c) { c.AddCookie("a", "b\r\n"); },
             [](W3Client& c) { c.AddPostArgument("a\nb", "", false); }}) {
        World world;
        Session run(world);
        spoil(run.client);
        EXPECT_FALSE(run.request(RequestKind::FormData));
        EXPECT_EQ(world.calls.find("begin"), std::string::npos);
    }
    World world;
    Session run(world);
    EXPECT_FALSE(run.client.PutFile("x", "y"));
    EXPECT_EQ(run.client.failure().text, "handle not opened...");
    EXPECT_FALSE(run.client.Connect("a.b\r\nQUIT", 0, "", "", Protocol::Ftp));
    EXPECT_TRUE(run.client.Connect("a.b", 0, "", "", Protocol::Ftp));
    EXPECT_EQ(world.server, "a.b:21 passive");
    EXPECT_FALSE(run.client.PutFile(utf8FromPath("tests/upload/CMakeLists.txt"), "x\r\nDELE y"));
}

TEST(W3Client, PutsAFileInPieces) {
    const test::ScratchFolder folder("put");
    const std::string file = utf8FromPath(folder.path() / "a.png");
    std::vector<uint8_t> content(2000000);
    for (size_t i = 0; i < content.size(); ++i) content[i] = static_cast<uint8_t>(i * 7);
    ASSERT_TRUE(writeFile(pathFromUtf8(file), content).ok());
    for (const char* failing : {"", "remote", "write", "close"}) {
        World world;
        world.failing = failing;
        Session run(world);
        ASSERT_TRUE(run.client.Connect("a.b", 2121, "me", "secret", Protocol::Ftp));
        const bool done = run.client.PutFile(file, "/up/a.png");
        EXPECT_EQ(done, *failing == '\0') << failing;
        if (done) {
            EXPECT_EQ(world.sent, std::string(content.begin(), content.end()));
            EXPECT_TRUE(run.log.ends_with("Stream size: 2000000\nFTP put complete\n")) << run.log;
        } else if (*failing != 'r') {
            EXPECT_TRUE(run.client.failure().text.starts_with("FTP: error writing file " + file));
            EXPECT_EQ(run.client.failure().caption, "Error");
        }
    }
}
