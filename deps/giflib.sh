# giflib's own makefile knows no cross build; the library is seven files.
source_package=giflib
needs=""
licence=COPYING
build() {
    local sources="dgif_lib egif_lib gifalloc gif_err gif_font gif_hash openbsd-reallocarray quantize" name
    for name in $sources; do
        $host-gcc-posix $CFLAGS -std=gnu99 -c "$name.c" -o "$name.o"
    done
    $host-ar rcs libgif.a ./*.o
    install -D -m644 libgif.a "$prefix/lib/libgif.a"
    install -D -m644 gif_lib.h "$prefix/include/gif_lib.h"
}
