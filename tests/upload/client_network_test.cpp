// The client over the system's functions, against real servers.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>

#include "common/files.h"
#include "network_servers.h"
#include "support/windows/native_tool.h"
#include "support/windows/system_objects.h"
#include "support/windows/test_account.h"
#include "upload/http/call_thread.h"
#include "upload/http/system_internet.h"
#include "upload/http/w3_client.h"

using namespace glimmer;
using namespace glimmer::test;
using namespace std::chrono_literals;
using testing::HasSubstr;

namespace {

constexpr InternetPatience impatient{.connect = 400ms, .call = 1000ms, .answer = 1000ms};

class Network : public testing::Test {
protected:
    void SetUp() override {
        if (!toolsAreHere()) GTEST_SKIP() << "the servers run on the system below Wine";
        picture_ = servers().folder() / "a picture.png";
        std::vector<uint8_t> content(300000);
        for (size_t i = 0; i < content.size(); ++i) content[i] = static_cast<uint8_t>(i * i >> 7U);
        ASSERT_TRUE(std::filesystem::exists(picture_) || writeFile(picture_, content).ok());
    }
    void TearDown() override {
        EXPECT_TRUE(picture_.empty() || std::filesystem::exists(picture_)) << "the picture is kept";
    }

    static NetworkServers& servers() { return NetworkServers::get(); }
    std::unique_ptr<W3Client> newClient(InternetPatience patience = {}) {
        return std::make_unique<W3Client>(
            systemInternet({}, patience),
            ClientListener{.log = [this](const std::string& line) { log_ += line + "\n"; }});
    }
    void addPicture(W3Client& client) const { client.AddPostArgument("file[0]", utf8FromPath(picture_), true); }
    /// What the servers say of the picture, with a digest from a program of the system.
    [[nodiscard]] std::string describedPicture() const {
        return "size=300000 sha1=" + runTool("sha1sum " + quotedForTool(picture_)).output.substr(0, 40);
    }
    std::string proxyAddress(const char* name) { return "127.0.0.1:" + std::to_string(servers().port(name)); }

    std::filesystem::path picture_;
    std::string log_;
};

std::string textOf(const W3Client& client) { return {client.Response().begin(), client.Response().end()}; }

}  // namespace

TEST_F(Network, SendsEachKindAsServersUnderstandIt) {
    const auto client = newClient();
    client->AddHeader("GData-Version: 2");
    client->AddCookie("sid", "abc");
    client->AddPostArgument("title", "a \"b\" & c", false);
    ASSERT_TRUE(client->Request(servers().http("echo?x=1"), RequestKind::Get)) << client->failure().text;
    for (const char* line : {"GET /echo?x=1 HTTP/1.0\n", "User-Agent: Mozilla/4.0 (compatible; )\n", "Accept: */*\n",
                             "GData-Version: 2\n", "sid=abc"})
        EXPECT_THAT(textOf(*client), HasSubstr(line));
    EXPECT_EQ(client->QueryStatusCode(), 200U);
    EXPECT_EQ(client->QueryContentType(), "text/plain");
    EXPECT_EQ(client->QueryContentLength(), client->Response().size());
    EXPECT_EQ(client->QueryCookie(), "seen=1");
    EXPECT_TRUE(client->QueryRawHeader().starts_with("HTTP/1.0 200 OK\r\n")) << client->QueryRawHeader();

    ASSERT_TRUE(client->Request(servers().http("echo"), RequestKind::Post)) << client->failure().text;
    for (const char* line : {"POST /echo HTTP/1.0\n", "Content-Type: application/x-www-form-urlencoded\n",
                             "body title=a%20%22b%22%20%26%20c\n", "Cookie: "})
        EXPECT_THAT(textOf(*client), HasSubstr(line));

    addPicture(*client);
    ASSERT_TRUE(client->Request(servers().http("echo"), RequestKind::FormData)) << client->failure().text;
    for (const std::string& line :
         {std::string("POST /echo HTTP/1.0\n"), std::string("Content-Type: multipart/form-data; boundary=----------"),
          std::string("parts 2 defects 0\n"), std::string("part None name=title file=None size=9 sha1="),
          "part image/png name=file[0] file=a picture.png " + describedPicture()})
        EXPECT_THAT(textOf(*client), HasSubstr(line));

    client->ClearPostArguments();
    client->AddPostArgument("application/atom+xml", "<entry>\xC3\xA4</entry>", false);
    addPicture(*client);
    ASSERT_TRUE(client->Request(servers().http("echo"), RequestKind::Related)) << client->failure().text;
    for (const std::string& line :
         {std::string("Content-Type: multipart/related; boundary=----------"), std::string("parts 2 defects 0\n"),
          std::string("part application/atom+xml; charset=\"utf-8\" name=None file=None size=17 sha1="),
          "part image/png name=None file=None " + describedPicture()})
        EXPECT_THAT(textOf(*client), HasSubstr(line));
    ASSERT_TRUE(client->Request(servers().http("to/%2Fecho%3Fafter"), RequestKind::FormData)) << client->failure().text;
    EXPECT_THAT(textOf(*client), HasSubstr("GET /echo?after HTTP/1.0\n"));
}

TEST_F(Network, EndsBadServersWithTheirMessage) {
    struct Case {
        std::string what;
        RequestKind kind;
        std::string uri;
        const char* says;  ///< of the message; empty: it is an answer
        uint32_t code;     ///< of the failure, or the answer's status
    };
    const RequestKind get = RequestKind::Get;
    const RequestKind post = RequestKind::FormData;
    constexpr const char* late = "The request has timed out.";
    for (const Case& c : std::initializer_list<Case>{
             {"wants a password", get, servers().http("status/401"), "", 401},
             {"finds it too large", post, servers().http("status/413"), "", 413},
             {"fails", post, servers().http("status/500"), "", 500},
             {"says more than it should", get, servers().http("longer"), "", 200},
             {"never answers", post, servers().http("silent"), late, 12002},
             {"answers byte by byte", get, servers().http("slowly"), late, 12002},
             {"begins to answer byte by byte", get, servers().http("slowhead"), late, 12002},
             {"never reads", post, servers().address("http", "deaf", ""), late, 12002},
             {"cannot be reached", get, servers().address("http", "unreachable", ""), late, 12002},
             {"is not there", post, servers().address("http", "closed", ""), "[12029] - ", 12029},
             {"has no name", get, "http://no-such-server.invalid/", "[12007] - ", 12007},
             {"closes in the middle", get, servers().http("half"), "before its answer was complete", 0},
             {"closes at once", post, servers().http("nothing"), "without an answer", 0},
             {"has no end of text", get, servers().http("huge"), "longer than 8 MiB", 0},
             {"has no end of headers", get, servers().http("heads"), "", 0}}) {
        const auto client = newClient(impatient);
        for (int i = 0; i < 20; ++i) addPicture(*client);
        const auto start = std::chrono::steady_clock::now();
        const bool done = client->Request(c.uri, c.kind);
        EXPECT_LT(std::chrono::steady_clock::now() - start, 5s) << c.what;
        if (c.code == 0 && *c.says == 0) {
            EXPECT_FALSE(done) << "out of time, or too long, as the system has it";
            continue;
        }
        EXPECT_EQ(done, *c.says == 0) << c.what << ": " << client->failure().text;
        EXPECT_EQ(done ? client->QueryStatusCode() : client->failure().code, c.code) << c.what;
        EXPECT_THAT(client->failure().text, HasSubstr(c.says)) << c.what;
        if (done && c.code >= 400) {
            EXPECT_EQ(textOf(*client), "<html>page of " + std::to_string(c.code) + "</html>");
        }
    }
    // Does not read to the end: whether its answer arrives is the network's luck.
    const auto client = newClient();
    for (int i = 0; i < 20; ++i) addPicture(*client);
    const bool done = client->Request(servers().http("early"), post);
    EXPECT_TRUE(done ? client->QueryStatusCode() == 413 : client->failure().step == "request failed");
    EXPECT_TRUE(newClient()->Request(servers().http("echo"), get)) << "and afterwards all is well";
}

TEST_F(Network, ChecksCertificates) {
    struct Case {
        const char* server;
        const char* path;
        const char* says;
    };
    for (const Case& c : std::initializer_list<Case>{
             {"https-good", "echo", ""},
             {"https-other", "echo", "belongs to another server. Nothing was sent."},
             {"https-unknown", "echo", "it may come from an issuer that this system does not trust. Nothing was sent."},
             {"https-self", "echo", "Nobody whom this system trusts has issued the server's certificate."},
             {"https-good", "to/http:%2F%2F127.0.0.1%2F",
              "without encryption (http://127.0.0.1). It was not followed."}})
        for (const RequestKind kind : {RequestKind::Get, RequestKind::FormData}) {
            const auto client = newClient();
            addPicture(*client);
            EXPECT_EQ(client->Request(servers().https(c.server, c.path), kind), *c.says == 0) << c.server;
            EXPECT_THAT(client->failure().text, HasSubstr(c.says));
            if (*c.says == 0 && kind == RequestKind::FormData) {
                EXPECT_THAT(textOf(*client), HasSubstr(describedPicture()));
            }
        }
}

TEST_F(Network, GoesThroughProxies) {
    struct Case {
        const char* proxy;
        const char* password;
        const char* says;
    };
    for (const Case& c :
         std::initializer_list<Case>{{"proxy", "", ""},
                                     {"proxy-private", "pr0xy", ""},
                                     {"proxy-private", "", "The proxy server asks for a user name and a password."},
                                     {"proxy-private", "wrong", "refuses the user name or the password."}})
        for (const RequestKind kind : {RequestKind::Get, RequestKind::Post, RequestKind::FormData})
            for (const std::string& uri : {servers().http("echo"), servers().https("https-good", "echo")}) {
                // A proxy that refuses reads no body; whether its answer arrives then is the network's luck.
                if (*c.says != 0 && kind != RequestKind::Get) continue;
                const auto client = newClient();
                addPicture(*client);
                client->SetProxy(true, proxyAddress(c.proxy), *c.password != 0 ? "me" : "", c.password);
                EXPECT_EQ(client->Request(uri, kind), *c.says == 0) << uri << ": " << client->failure().text;
                EXPECT_THAT(client->failure().text, HasSubstr(c.says));
                const std::string text = textOf(*client);
                EXPECT_EQ(text.find("Proxy-Authorization"), std::string::npos) << "is for the proxy alone";
                if (*c.says != 0) continue;
                EXPECT_TRUE(uri[4] == 's' || text.find("\nVia: ") != std::string::npos) << text;
                if (kind == RequestKind::FormData) {
                    EXPECT_THAT(text, HasSubstr(describedPicture()));
                }
            }
}

TEST_F(Network, PutsFilesByFtp) {
    const uint16_t port = servers().port("ftp");
    const std::string file = utf8FromPath(picture_);
    for (const bool passive : {true, false}) {
        const auto client = newClient();
        ASSERT_TRUE(client->Connect("127.0.0.1", port, "me", "secret", Protocol::Ftp, W3Client::usualAgent, passive))
            << client->failure().text;
        EXPECT_TRUE(client->PutFile(file, "/up/x.png")) << client->failure().text;
        const auto mode = readFile(servers().folder() / "ftp-mode", 100);
        EXPECT_EQ(std::string(mode->begin(), mode->end()), passive ? "passive" : "active");
        EXPECT_EQ(*readFile(servers().folder() / "ftp/up/x.png", 1U << 20U), *readFile(picture_, 1U << 20U));
        std::filesystem::remove(servers().folder() / "ftp/up/x.png");
        EXPECT_FALSE(client->PutFile(file, "/full/x.png")) << "the server says so at the very end";
        EXPECT_THAT(client->failure().text, HasSubstr("FTP: error writing file " + file));
        EXPECT_THAT(client->failure().text, HasSubstr("No room for that."));
    }
    const auto client = newClient();
    EXPECT_FALSE(client->Connect("127.0.0.1", port, "me", "wrong", Protocol::Ftp));
    EXPECT_THAT(client->failure().text,
                testing::StartsWith("connect failed...\r\n\r\nThe server refuses the user name"));
    EXPECT_THAT(client->failure().text, HasSubstr("[12015] - 530"));
    EXPECT_FALSE(client->Connect("127.0.0.1", servers().port("closed"), "me", "secret", Protocol::Ftp));
    EXPECT_EQ(log_.find("secret"), std::string::npos) << log_;
}
