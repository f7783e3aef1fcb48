#pragma once

#include <chrono>
#include <cstdint>

namespace glimmer {

/// Makes whole pixels or steps of the turns of a wheel. A mouse turns by notches; a touch pad and a wheel that runs
/// freely send fractions of one, down to a hundredth, many times a second. What is left over is kept for the next
/// message, but not when the wheel turns back, turns something else or has rested.
class WheelTurns {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// What the wheel moves. With a key held that means something else it is another one.
    enum class Use : uint8_t { Down, Across, Zoom };

    static constexpr int32_t notch = 120;                  ///< the system's measure of one notch
    static constexpr std::chrono::milliseconds rest{500};  ///< after it the next turn is a new one

    /// How far `rotation` (positive: away from the user, or to the right) moves: pixels or steps, with the sign of the
    /// rotation. `perNotch`: how many of them a whole notch is, 0 or more.
    int32_t turn(Use use, int32_t rotation, int32_t perNotch, Time now);

private:
    Use use_ = Use::Down;
    int32_t perNotch_ = 0;
    int64_t left_ = 0;  ///< rotation x perNotch, less than a notch
    Time last_{};
};

}  // namespace glimmer
