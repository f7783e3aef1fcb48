# Its own makefile gives the library the name that another compiler looks for; it is a dozen files.
source_package=libdeflate
needs=""
licence=COPYING
build() {
    local source
    for source in lib/*.c lib/x86/*.c; do
        $host-gcc-posix $CFLAGS -std=c99 -I. -c "$source" -o "${source//\//-}.o"
    done
    $host-ar rcs libdeflate.a ./*.o
    install -D -m644 libdeflate.a "$prefix/lib/libdeflate.a"
    install -D -m644 libdeflate.h "$prefix/include/libdeflate.h"
}
