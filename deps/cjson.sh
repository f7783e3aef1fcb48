source_package=cjson
needs=""
licence=LICENSE
build() {
    # Nothing of it may become an export of the library that links it.
    CFLAGS+=" -DCJSON_HIDE_SYMBOLS"
    cmake_build -DENABLE_CJSON_TEST=OFF -DBUILD_SHARED_AND_STATIC_LIBS=OFF -DENABLE_CUSTOM_COMPILER_FLAGS=OFF
}
