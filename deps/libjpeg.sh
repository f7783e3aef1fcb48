source_package=libjpeg-turbo
needs=""
licence=LICENSE.md
build() { cmake_build -DENABLE_SHARED=OFF -DWITH_TURBOJPEG=OFF; }
