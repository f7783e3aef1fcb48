#include "common/clock.h"

#include <ctime>

namespace glimmer {

namespace {

class SystemClock : public Clock {
public:
    LocalTime now() override {
        const std::time_t seconds = std::time(nullptr);
        std::tm parts{};
#ifdef _WIN32
        localtime_s(&parts, &seconds);
#else
        localtime_r(&seconds, &parts);
#endif
        return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec};
    }
};

}  // namespace

Clock& systemClock() {
    static SystemClock clock;
    return clock;
}

}  // namespace glimmer
