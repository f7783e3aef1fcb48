source_package=libpng1.6
needs=""
licence=LICENSE
build() {
    freshen
    CC=$host-gcc-posix ./configure --host=$host --prefix="$prefix" --disable-shared --enable-intel-sse=yes
    make -j"$jobs"
    make install
}
