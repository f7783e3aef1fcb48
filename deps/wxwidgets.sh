# Monolithic and static, without what the program does not use.
source_package=wxwidgets3.2
needs="libpng libjpeg"
licence=docs/licence.txt
build() {
    mkdir -p out && cd out
    CC=$host-gcc-posix CXX=$host-g++-posix CPPFLAGS="$(need_cflags)" LDFLAGS="$(need_ldflags)" \
        ../configure --host=$host --build="$(dpkg-architecture -qDEB_BUILD_GNU_TYPE 2>/dev/null || gcc -dumpmachine)" \
        --prefix="$prefix" --with-msw --enable-monolithic --disable-shared --enable-unicode --disable-debug \
        --enable-cxx11 --with-cxx=17 --with-zlib=sys --with-libpng=sys --with-libjpeg=sys --without-libtiff --without-expat --without-regex \
        --without-liblzma --without-opengl --disable-webview --disable-stc --disable-propgrid --disable-ribbon \
        --disable-html --disable-sockets --disable-mediactrl --disable-glcanvasegl --disable-xrc --disable-aui \
        --disable-richtext --disable-fs_inet --disable-protocol --disable-protocols --disable-url \
        --disable-debugreport --disable-dialupman --disable-joystick --disable-mdi --disable-docview \
        --disable-help --disable-tests --disable-sound --enable-precomp-headers --disable-dependency-tracking --disable-secretstore \
        --disable-webrequest
    make -j"$jobs"
    make install
}
