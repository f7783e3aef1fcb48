#include "network_servers.h"

#include <gtest/gtest.h>
// clang-format off
#include <windows.h>
#include <wincrypt.h>
// clang-format on

#include <fstream>

#include "common/files.h"
#include "support/windows/native_tool.h"

namespace glimmer::test {

namespace {

std::unique_ptr<NetworkServers> running;

/// A store of certificates is written when it is closed.
void changeTrusted(const std::filesystem::path& certificate, bool trust) {
    const auto bytes = readFile(certificate, 1U << 20U);
    ASSERT_TRUE(bytes.ok()) << bytes.message();
    const HCERTSTORE store = CertOpenStore(CERT_STORE_PROV_SYSTEM_W, 0, 0, CERT_SYSTEM_STORE_CURRENT_USER, L"Root");
    PCCERT_CONTEXT context = nullptr;
    EXPECT_NE(CertAddEncodedCertificateToStore(store, X509_ASN_ENCODING, bytes->data(),
                                               static_cast<DWORD>(bytes->size()), CERT_STORE_ADD_ALWAYS, &context),
              FALSE);
    if (trust) {
        CertFreeCertificateContext(context);
    } else {
        EXPECT_NE(CertDeleteCertificateFromStore(context), FALSE);
    }
    CertCloseStore(store, 0);
}

class EndThem : public testing::Environment {
    void TearDown() override { running.reset(); }
};

}  // namespace

NetworkServers& NetworkServers::get() {
    if (!running) running = std::make_unique<NetworkServers>();
    return *running;
}

[[maybe_unused]] static const auto* const ending = testing::AddGlobalTestEnvironment(new EndThem);

NetworkServers::NetworkServers() : folder_("servers") {
    const ToolResult started = runTool("/usr/bin/python3 " + quotedForTool("tests/upload/servers/network_servers.py") +
                                       " " + quotedForTool(folder()));
    EXPECT_EQ(started.code, 0) << started.output;
    std::ifstream file(folder() / "ports");
    std::string name;
    for (uint16_t port = 0; file >> name >> port;) ports_[name] = port;
    changeTrusted(folder() / "ca.der", true);
}

NetworkServers::~NetworkServers() {
    changeTrusted(folder() / "ca.der", false);
    std::ofstream(folder() / "stop") << "now";
}

uint16_t NetworkServers::port(const std::string& server) const {
    const auto found = ports_.find(server);
    EXPECT_NE(found, ports_.end()) << server;
    return found == ports_.end() ? uint16_t{1} : found->second;
}

std::string NetworkServers::address(const std::string& scheme, const std::string& server,
                                    const std::string& path) const {
    return scheme + "://127.0.0.1:" + std::to_string(port(server)) + "/" + path;
}

std::string NetworkServers::https(const std::string& server, const std::string& path) const {
    return "https://localhost:" + std::to_string(port(server)) + "/" + path;
}

}  // namespace glimmer::test
