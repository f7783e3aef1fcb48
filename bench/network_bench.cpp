// network_bench FOLDER FILE: the client against the servers of tests/upload/servers, which run for FOLDER. Says how
// long a multipart upload of FILE takes, how much memory it needs at most, and the longest time that a Cancel took in a
// hundred.

#include <windows.h>
// After windows.h, which it needs.
#include <psapi.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <map>
#include <thread>

#include "common/files.h"
#include "upload/http/system_internet.h"
#include "upload/http/w3_client.h"

namespace {

using namespace glimmer;
using std::chrono::steady_clock;

double secondsSince(steady_clock::time_point start) {
    return std::chrono::duration<double>(steady_clock::now() - start).count();
}

PROCESS_MEMORY_COUNTERS memory() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters;
}

std::map<std::string, std::string> readPorts(const std::filesystem::path& folder) {
    std::map<std::string, std::string> ports;
    std::ifstream file(folder / "ports");
    for (std::string name, port; file >> name >> port;) ports[name] = port;
    return ports;
}

void upload(const std::string& address, const std::string& file) {
    W3Client(systemInternet()).Request(address, RequestKind::Get);  // loads what the system needs for it
    const auto before = memory();
    const uint64_t size = std::filesystem::file_size(pathFromUtf8(file));
    double best = 1e9;
    for (int i = 0; i < 5; ++i) {
        W3Client client(systemInternet());
        client.AddPostArgument("file", file, true);
        const auto start = steady_clock::now();
        if (!client.Request(address, RequestKind::FormData)) std::printf("%s\n", client.failure().text.c_str());
        best = std::min(best, secondsSince(start));
    }
    const auto after = memory();
    std::printf("upload %.3f s; peak working set %.1f MiB above the body (page file %.1f)\n", best,
                (static_cast<double>(after.PeakWorkingSetSize) - static_cast<double>(before.WorkingSetSize) -
                 static_cast<double>(size)) /
                    1048576,
                (static_cast<double>(after.PeakPagefileUsage) - static_cast<double>(before.PagefileUsage) -
                 static_cast<double>(size)) /
                    1048576);
}

double cancelAfter(const std::string& address, const std::string& file, unsigned milliseconds) {
    const auto cancelled = std::make_shared<std::atomic<bool>>(false);
    steady_clock::time_point pressed;
    std::thread presser([&] {
        Sleep(milliseconds);
        pressed = steady_clock::now();
        *cancelled = true;
    });
    {
        W3Client client(systemInternet(cancelled), {.cancelled = [&] { return cancelled->load(); }});
        if (!file.empty()) client.AddPostArgument("file", file, true);
        client.Request(address, file.empty() ? RequestKind::Get : RequestKind::FormData);
    }
    const auto end = steady_clock::now();
    presser.join();
    return std::max(0.0, std::chrono::duration<double>(end - pressed).count());
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count < 3) return 2;
    auto ports = readPorts(arguments[1]);
    const std::string file = utf8FromPath(arguments[2]);
    const std::string http = "http://127.0.0.1:" + ports["http"];
    upload(http + "/quiet", file);
    double longest = 0;
    for (unsigned i = 0; i < 100; ++i) {
        const std::string addresses[] = {"http://127.0.0.1:" + ports["deaf"] + "/", http + "/silent", http + "/slowly",
                                         "http://127.0.0.1:" + ports["unreachable"] + "/"};
        const unsigned kind = i % 4;
        const double took = cancelAfter(addresses[kind], kind == 0 ? file : "", 100 + i * 3);
        longest = std::max(longest, took);
    }
    std::printf("longest Cancel of a hundred: %.3f s\n", longest);
    std::fflush(stdout);
    // Calls that nobody waits for are still under way; the system ends them with the process.
    TerminateProcess(GetCurrentProcess(), 0);
    return 0;
}
