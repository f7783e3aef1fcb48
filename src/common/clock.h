#pragma once

namespace glimmer {

/// A moment of the user's calendar.
struct LocalTime {
    int year = 1970;
    int month = 1;  ///< 1 to 12
    int day = 1;    ///< 1 to 31
    int hour = 0;   ///< 0 to 23
    int minute = 0;
    int second = 0;
    bool operator==(const LocalTime&) const = default;
};

/// Tells the time; a test gives its own.
class Clock {
public:
    virtual ~Clock() = default;
    virtual LocalTime now() = 0;
};

/// The computer's clock in its time zone.
Clock& systemClock();

}  // namespace glimmer
