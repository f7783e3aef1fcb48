#include "editor/canvas/wheel_turns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace glimmer {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAreArray;
using Use = WheelTurns::Use;

TEST(WheelTurns, FractionsOfANotchAddUpUntilTheWheelTurnsBackOrRests) {
    const struct {
        const char* what;
        int32_t perNotch;
        milliseconds apart;
        std::vector<std::pair<Use, int32_t>> turns;
        std::vector<int32_t> moved;
    } cases[] = {
        {"a mouse", 60, milliseconds(10), {{Use::Down, 120}, {Use::Down, -240}}, {60, -120}},
        {"a touch pad",
         60,
         milliseconds(10),
         {{Use::Down, 30}, {Use::Down, 30}, {Use::Down, 1}, {Use::Down, 1}},
         {15, 15, 0, 1}},
        {"a step is a whole notch",
         1,
         milliseconds(10),
         {{Use::Zoom, 30}, {Use::Zoom, 30}, {Use::Zoom, 30}, {Use::Zoom, 30}, {Use::Zoom, 30}},
         {0, 0, 0, 1, 0}},
        {"towards the user", 1, milliseconds(10), std::vector(7, std::pair(Use::Zoom, -20)), {0, 0, 0, 0, 0, -1, 0}},
        {"there and back", 1, milliseconds(10), {{Use::Zoom, 100}, {Use::Zoom, -40}, {Use::Zoom, -80}}, {0, 0, -1}},
        {"two at once", 1, milliseconds(10), {{Use::Zoom, 250}, {Use::Zoom, 110}}, {2, 1}},
        {"it rested", 1, milliseconds(500), {{Use::Zoom, 110}, {Use::Zoom, 110}}, {0, 0}},
        {"Ctrl in between", 1, milliseconds(10), {{Use::Zoom, 110}, {Use::Across, 110}, {Use::Zoom, 110}}, {0, 0, 0}},
        {"a wheel that is switched off", 0, milliseconds(10), {{Use::Down, 120}, {Use::Down, 120}}, {0, 0}},
    };
    for (const auto& c : cases) {
        WheelTurns wheel;
        WheelTurns::Time now{std::chrono::hours(1)};
        std::vector<int32_t> moved;
        for (const auto& [use, rotation] : c.turns)
            moved.push_back(wheel.turn(use, rotation, c.perNotch, now += c.apart));
        EXPECT_THAT(moved, ElementsAreArray(c.moved)) << c.what;
    }
}

}  // namespace
}  // namespace glimmer
