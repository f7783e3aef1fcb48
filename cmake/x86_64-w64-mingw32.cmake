# Cross-compiles for 64-bit Windows: the same sources, for running tests on machines that run no 32-bit programs.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_AR x86_64-w64-mingw32-gcc-ar-posix)
set(CMAKE_RANLIB x86_64-w64-mingw32-gcc-ranlib-posix)

# The host record holds addresses in 32-bit words, so code lies below 4 GB.
foreach(kind EXE SHARED)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "-Wl,--disable-dynamicbase -Wl,--disable-high-entropy-va")
endforeach()
string(APPEND CMAKE_EXE_LINKER_FLAGS_INIT " -Wl,--image-base,0x10000000")
string(APPEND CMAKE_SHARED_LINKER_FLAGS_INIT " -Wl,--image-base,0x30000000")

set(glimmerpad_host x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/find_root.cmake)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
