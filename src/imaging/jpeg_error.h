#pragma once

#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <string>

#include <jerror.h>
#include <jpeglib.h>

namespace glimmer {

/// libjpeg's error manager, made to leave by longjmp and to say why. Its address is that of the library's own part.
struct JpegErrors {
    jpeg_error_mgr base;
    std::jmp_buf jump;
    char message[JMSG_LENGTH_MAX];

    /// Sets the manager up; `damageIsError` makes warnings that mean lost pixels end the work.
    void install(jpeg_common_struct* library, bool damageIsError);
    /// Ends the work with a reason of our own.
    [[noreturn]] void leave(const char* reason);
    [[nodiscard]] std::string reason() const { return message; }
};

}  // namespace glimmer
