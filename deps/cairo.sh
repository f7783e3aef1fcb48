source_package=cairo
needs="pixman"
licence=COPYING-LGPL-2.1
build() {
    freshen
    # The library is linked into ours, so nothing of it is exported.
    CC=$host-gcc-posix CFLAGS="$CFLAGS -DCAIRO_WIN32_STATIC_BUILD" ./configure --host=$host --prefix="$prefix" \
        --disable-shared --enable-static --enable-win32=yes --enable-win32-font=yes --enable-png=no --enable-ps=no \
        --enable-pdf=no --enable-svg=no --enable-script=no --enable-xlib=no --enable-xcb=no --enable-ft=no \
        --enable-fc=no --enable-gobject=no --enable-interpreter=no --enable-trace=no
    make -j"$jobs" -C src
    make -C src install
}
