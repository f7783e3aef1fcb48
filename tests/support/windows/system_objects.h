#pragma once

#include <cstdint>
#include <ostream>

namespace glimmer::test {

/// What this process holds of the system; for "flat after the second round" tests.
struct SystemObjects {
    uint32_t handles = 0;
    uint32_t gdi = 0;
    uint32_t user = 0;
    uint64_t privateBytes = 0;
};
SystemObjects countObjects();

std::ostream& operator<<(std::ostream& out, const SystemObjects& objects);

}  // namespace glimmer::test
