#include "common/debug_channel.h"

#include <utility>

namespace glimmer {

namespace {

DebugChannel& current() {
    static DebugChannel channel;
    return channel;
}

}  // namespace

DebugChannel setDebugChannel(DebugChannel channel) { return std::exchange(current(), std::move(channel)); }

void debugRemark(std::string_view text) {
    if (current()) current()(text);
}

}  // namespace glimmer
