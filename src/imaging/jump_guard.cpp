#include "imaging/jump_guard.h"

namespace glimmer {

bool runGuarded(std::jmp_buf& jump, void (*body)(void*), void* object) {
    if (setjmp(jump) != 0) return false;  // NOLINT(cert-err52-cpp): the libraries know no other way
    body(object);
    return true;
}

}  // namespace glimmer
