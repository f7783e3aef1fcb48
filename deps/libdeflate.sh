# Its own makefile gives the library the name that another compiler looks for; it is a dozen files.
source_package=libdeflate
needs=""
licence=COPYING
build() {
    local source
    # For 64-bit Windows the compiler does not align the stack to 32 bytes, so the assembler is told to use moves that
    # need no alignment.
    [ $host = i686-w64-mingw32 ] || CFLAGS+=" -Wa,-muse-unaligned-vector-move"
    for source in lib/*.c lib/x86/*.c; do
        $host-gcc-posix $CFLAGS -std=c99 -I. -c "$source" -o "${source//\//-}.o"
    done
    $host-ar rcs libdeflate.a ./*.o
    install -D -m644 libdeflate.a "$prefix/lib/libdeflate.a"
    install -D -m644 libdeflate.h "$prefix/include/libdeflate.h"
}
