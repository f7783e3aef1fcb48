#include "settings/debug_log.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <utility>

#include "common/clock.h"
#include "common/debug_channel.h"
#include "common/files.h"
#include "settings/options.h"
#include "settings/settings_path.h"

namespace glimmer {

namespace {

constexpr uintmax_t mostBytes = uintmax_t{1024} * 1024;

void append(std::string_view text) {
    std::filesystem::path path = pathFromUtf8(settingsPath());
    path.replace_extension(".log");
    std::error_code error;
    const uintmax_t size = std::filesystem::file_size(path, error);
    const bool full = !error && size > mostBytes;
    std::ofstream file(path, std::ios::binary | (full ? std::ios::trunc : std::ios::app));
    const LocalTime now = systemClock().now();
    char time[64];
    const int length = std::snprintf(time, sizeof time, "%04d-%02d-%02d %02d:%02d:%02d ", now.year, now.month, now.day,
                                     now.hour, now.minute, now.second);
    file.write(time, length);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.remove_suffix(1);
    file << text << '\n';
}

}  // namespace

void connectDebugLog() {
    const auto wanted = [] { return !settingsPath().empty() && OptionsHolder().on("chkDebugMode"); };
    setDebugDetailsWanted(wanted);
    DebugChannel before = setDebugChannel({});
    setDebugChannel([before = std::move(before), wanted](std::string_view text) {
        if (before) before(text);
        if (wanted()) append(text);
    });
}

}  // namespace glimmer
