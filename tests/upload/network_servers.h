#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "support/scratch_folder.h"

namespace glimmer::test {

/// The servers of tests/upload/servers, as long as the object lives. Only where toolsAreHere(); the one of a test
/// program is made at its first use and goes at the program's end.
class NetworkServers : NotCopied {
public:
    static NetworkServers& get();
    NetworkServers();
    ~NetworkServers();

    [[nodiscard]] uint16_t port(const std::string& server) const;
    /// "http://127.0.0.1:PORT/" and `path`.
    [[nodiscard]] std::string http(const std::string& path) const { return address("http", "http", path); }
    /// Those with certificates; their names are names of "localhost".
    [[nodiscard]] std::string https(const std::string& server, const std::string& path) const;
    [[nodiscard]] std::string address(const std::string& scheme, const std::string& server,
                                      const std::string& path) const;
    [[nodiscard]] const std::filesystem::path& folder() const { return folder_.path(); }

private:
    ScratchFolder folder_;
    std::map<std::string, uint16_t> ports_;
};

}  // namespace glimmer::test
