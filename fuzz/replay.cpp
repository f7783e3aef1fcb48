// Gives the files of the folders named to one fuzzer, one by one: `fuzz_replay NAME FOLDER...`. A folder that does not
// exist is empty: there may have been no failure yet. No file at all is an error.

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>

#include "common/files.h"
#include "fuzz/fuzz.h"

// FUZZERS is the build's list of them.
#define FUZZER(name) extern "C" int fuzz_##name(const uint8_t* data, size_t size);
FUZZERS
#undef FUZZER
#define FUZZER(name) {#name, fuzz_##name},

namespace {
const std::map<std::string, int (*)(const uint8_t*, size_t)> fuzzers = {FUZZERS};
}

int main(int count, char** arguments) {
    const auto fuzzer = fuzzers.find(count > 1 ? arguments[1] : "");
    if (fuzzer == fuzzers.end()) {
        std::fprintf(stderr, "no such fuzzer\n");
        return 1;
    }
    LLVMFuzzerInitialize(&count, &arguments);
    size_t files = 0;
    for (int i = 2; i < count; ++i) {
        std::error_code error;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(arguments[i], error)) {
            if (!entry.is_regular_file()) continue;
            const glimmer::Result<std::vector<uint8_t>> data = glimmer::readFile(entry.path(), uint64_t{1} << 30U);
            if (!data) {
                std::fprintf(stderr, "%s\n", data.message().c_str());
                return 1;
            }
            std::printf("%s\n", entry.path().string().c_str());
            std::fflush(stdout);
            fuzzer->second(data->data(), data->size());
            ++files;
        }
    }
    std::printf("%zu files\n", files);
    return files > 0 ? 0 : 1;
}
