#include "common/debug_channel.h"

#include <algorithm>
#include <utility>

namespace glimmer {

namespace {

DebugChannel& current() {
    static DebugChannel channel;
    return channel;
}

std::function<bool()>& detailsWanted() {
    static std::function<bool()> wanted;
    return wanted;
}

}  // namespace

DebugChannel setDebugChannel(DebugChannel channel) { return std::exchange(current(), std::move(channel)); }

void debugRemark(std::string_view text) {
    if (current()) current()(text);
}

void debugDetail(std::string_view text) {
    if (current() && detailsWanted() && detailsWanted()()) current()(withoutQueries(text));
}

void setDebugDetailsWanted(std::function<bool()> wanted) { detailsWanted() = std::move(wanted); }

std::string withoutQueries(std::string_view text) {
    std::string out;
    for (;;) {
        const size_t address = text.find("://");
        const size_t end = std::min(text.find_first_of(" \t\r\n\"<>", address), text.size());
        const size_t query = address == std::string_view::npos ? end : text.find_first_of("?#", address);
        out += text.substr(0, std::min(query, end));
        if (end == text.size()) return out;
        text.remove_prefix(end);
    }
}

}  // namespace glimmer
