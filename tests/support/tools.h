#pragma once

#ifndef _WIN32

#include <sys/wait.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

#include "common/bitmap.h"
#include "common/files.h"

// Independent programs that read what we write. The set-up installs them; a missing one is a failed test.

namespace glimmer::test {

struct ToolResult {
    int code = -1;
    std::string output;  ///< both streams
};

/// Runs a command line of the shell.
inline ToolResult runTool(const std::string& command) {
    ToolResult result;
    std::FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return result;
    char buffer[4096];
    for (size_t got = 0; (got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) result.output.append(buffer, got);
    const int status = pclose(pipe);
    result.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

inline std::string quoted(const std::filesystem::path& path) { return "'" + path.string() + "'"; }

/// A binary PPM or PGM file of 8 bits.
inline Result<TBitmap> readPpm(const std::filesystem::path& path) {
    const Result<std::vector<uint8_t>> file = readFile(path, uint64_t{1} << 30U);
    if (!file) return file.failure();
    const std::string head(file->begin(),
                           file->begin() + static_cast<std::ptrdiff_t>(std::min<size_t>(64, file->size())));
    int width = 0;
    int height = 0;
    int start = 0;
    char kind = 0;
    if (std::sscanf(head.c_str(), "P%c %d %d 255%n", &kind, &width, &height, &start) != 3 || start == 0)
        return Failure{"no PPM header: " + head};
    const size_t channels = kind == '6' ? 3 : 1;
    Result<TBitmap> bitmap = TBitmap::create(width, height, PixelFormat::Bgr24);
    if (!bitmap) return bitmap;
    const size_t row = static_cast<size_t>(width) * channels;
    const size_t first = static_cast<size_t>(start) + 1;
    if (file->size() < first + row * static_cast<size_t>(height)) return Failure{"PPM cut short"};
    for (int32_t y = 0; y < height; ++y) {
        const uint8_t* from = file->data() + first + row * static_cast<size_t>(y);
        for (int32_t x = 0; x < width; ++x, from += channels)
            bitmap->setPixel(x, y, channels == 3 ? rgb(from[0], from[1], from[2]) : rgb(from[0], from[0], from[0]));
    }
    return bitmap;
}

}  // namespace glimmer::test

#endif
