source_package=pixman
needs=""
licence=COPYING
build() {
    freshen
    CC=$host-gcc-posix ./configure --host=$host --prefix="$prefix" --disable-shared --disable-gtk --disable-libpng \
        --disable-openmp
    make -j"$jobs" -C pixman
    make -C pixman install
    install -D -m644 pixman-1.pc "$prefix/lib/pkgconfig/pixman-1.pc"
}
