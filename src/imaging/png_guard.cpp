#include "imaging/png_guard.h"

#include <csetjmp>

namespace glimmer {

bool runGuarded(png_structp png, void (*body)(void*), void* object) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;  // NOLINT(cert-err52-cpp): libpng knows no other way
    body(object);
    return true;
}

}  // namespace glimmer
