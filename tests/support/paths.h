#pragma once

// Tests run in the project's root folder (CTest sees to it), so paths are relative and the compiler cache serves
// every checkout.

namespace glimmer::test {

inline constexpr const char* samplesFolder = "samples";
inline constexpr const char* dataFolder = "tests/data";

}  // namespace glimmer::test
