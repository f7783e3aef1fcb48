#include "editor/canvas/wheel_turns.h"

namespace glimmer {

int32_t WheelTurns::turn(Use use, int32_t rotation, int32_t perNotch, Time now) {
    const bool back = (left_ < 0 && rotation > 0) || (left_ > 0 && rotation < 0);
    if (back || use != use_ || perNotch != perNotch_ || now - last_ >= rest) left_ = 0;
    use_ = use;
    perNotch_ = perNotch;
    last_ = now;
    left_ += int64_t{rotation} * perNotch;
    const int64_t whole = left_ / notch;
    left_ -= whole * notch;
    return static_cast<int32_t>(whole);
}

}  // namespace glimmer
