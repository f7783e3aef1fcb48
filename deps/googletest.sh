source_package=googletest
needs=""
licence=LICENSE
build() { cmake_build -DCMAKE_CXX_STANDARD=17; }
