// Gives the files of the folders named to a fuzzer, one by one. A folder that does not exist is empty: there may have
// been no failure yet. No file at all is an error.

#include <cstdio>
#include <filesystem>

#include "common/files.h"
#include "fuzz/fuzz.h"

int main(int count, char** arguments) {
    size_t files = 0;
    for (int i = 1; i < count; ++i) {
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
            LLVMFuzzerTestOneInput(data->data(), data->size());
            ++files;
        }
    }
    std::printf("%zu files\n", files);
    return files > 0 ? 0 : 1;
}
