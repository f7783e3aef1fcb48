#include "imaging/jpeg_error.h"

namespace glimmer {

namespace {

JpegErrors& errorsOf(j_common_ptr library) { return *reinterpret_cast<JpegErrors*>(library->err); }

[[noreturn]] void failWithLibraryText(j_common_ptr library) {
    JpegErrors& errors = errorsOf(library);
    errors.base.format_message(library, errors.message);
    std::longjmp(errors.jump, 1);
}

void dropMessage(j_common_ptr, int) {}

/// Stray bytes between segments and odd version numbers lose no pixel; everything else does.
void refuseDamage(j_common_ptr library, int level) {
    if (level >= 0) return;
    switch (library->err->msg_code) {
        case JWRN_EXTRANEOUS_DATA:
        case JWRN_JFIF_MAJOR:
        case JWRN_ADOBE_XFORM:
            return;
        default:
            failWithLibraryText(library);
    }
}

}  // namespace

void JpegErrors::install(jpeg_common_struct* library, bool damageIsError) {
    library->err = jpeg_std_error(&base);
    base.error_exit = &failWithLibraryText;
    base.emit_message = damageIsError ? &refuseDamage : &dropMessage;
    message[0] = '\0';
}

void JpegErrors::leave(const char* reason) {
    std::snprintf(message, sizeof message, "%s", reason);
    std::longjmp(jump, 1);
}

}  // namespace glimmer
