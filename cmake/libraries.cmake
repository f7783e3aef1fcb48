# The libraries that the program uses, as targets: glimmer::zlib, png, jpeg, gif, deflate, cjson, simpleini, cairo and, on
# Windows, wx. Natively they come from the distribution's development packages, for Windows from deps/.
if(WIN32)
    # Everything is linked in; "libz.dll.a" would match before "libz.a" otherwise.
    set(CMAKE_FIND_LIBRARY_SUFFIXES .a)
endif()
find_package(ZLIB REQUIRED)
find_package(PNG REQUIRED)
find_package(JPEG REQUIRED)

function(glimmer_library name)
    cmake_parse_arguments(arg "" "HEADER" "LIBRARIES;SUFFIXES" ${ARGN})
    add_library(glimmer_dep_${name} INTERFACE)
    add_library(glimmer::${name} ALIAS glimmer_dep_${name})
    find_path(${name}_include ${arg_HEADER} PATH_SUFFIXES ${arg_SUFFIXES} REQUIRED)
    target_include_directories(glimmer_dep_${name} SYSTEM INTERFACE ${${name}_include})
    foreach(library IN LISTS arg_LIBRARIES)
        find_library(${name}_${library} ${library} REQUIRED)
        target_link_libraries(glimmer_dep_${name} INTERFACE ${${name}_${library}})
    endforeach()
endfunction()

glimmer_library(gif HEADER gif_lib.h LIBRARIES gif)
glimmer_library(deflate HEADER libdeflate.h LIBRARIES deflate)
glimmer_library(cjson HEADER cjson/cJSON.h LIBRARIES cjson)
target_compile_definitions(glimmer_dep_cjson INTERFACE CJSON_HIDE_SYMBOLS)
glimmer_library(simpleini HEADER SimpleIni.h)
if(WIN32)
    glimmer_library(cairo HEADER cairo.h SUFFIXES cairo LIBRARIES cairo pixman-1)
    target_compile_definitions(glimmer_dep_cairo INTERFACE CAIRO_WIN32_STATIC_BUILD)
    # Its checked string functions (cairo is built with _FORTIFY_SOURCE) come from the compiler's libssp.
    target_link_libraries(glimmer_dep_cairo INTERFACE ssp gdi32 msimg32)
else()
    glimmer_library(cairo HEADER cairo.h SUFFIXES cairo LIBRARIES cairo)
endif()

if(WIN32)
    find_program(WX_CONFIG wx-config PATHS ${CMAKE_FIND_ROOT_PATH} PATH_SUFFIXES bin NO_DEFAULT_PATH REQUIRED)
    execute_process(COMMAND ${WX_CONFIG} --cxxflags OUTPUT_VARIABLE wx_cxx OUTPUT_STRIP_TRAILING_WHITESPACE)
    execute_process(COMMAND ${WX_CONFIG} --libs OUTPUT_VARIABLE wx_libs OUTPUT_STRIP_TRAILING_WHITESPACE)
    separate_arguments(wx_cxx)
    separate_arguments(wx_libs)
    # "-Wl,--subsystem,windows -mwindows" belong to the programs, which say themselves what they are.
    list(FILTER wx_libs EXCLUDE REGEX "subsystem|mwindows")
    include(${CMAKE_CURRENT_LIST_DIR}/delayed_libraries.cmake)
    glimmer_delayed_library(delayed_comdlg32 COMDLG32.DLL
        ChooseColorW@4 ChooseFontW@4 CommDlgExtendedError@0 GetOpenFileNameW@4 GetSaveFileNameW@4 PageSetupDlgW@4
        PrintDlgW@4)
    glimmer_delayed_library(delayed_winspool WINSPOOL.DRV
        ClosePrinter@4 DocumentPropertiesW@24 GetPrinterW@20 OpenPrinterW@12)
    glimmer_delayed_library(delayed_oleacc OLEACC.DLL CreateStdAccessibleObject@16 LresultFromObject@12)
    glimmer_delayed_library(delayed_winmm WINMM.DLL PlaySoundW@12)
    glimmer_delayed_library(delayed_wininet WININET.DLL
        FtpOpenFileW@20 HttpAddRequestHeadersW@16 HttpEndRequestW@16 HttpOpenRequestW@32 HttpQueryInfoW@20
        HttpSendRequestExW@20 HttpSendRequestW@20 InternetAttemptConnect@4 InternetCloseHandle@4 InternetConnectW@32
        InternetGetLastResponseInfoW@12 InternetOpenW@20 InternetQueryDataAvailable@16
        InternetQueryOptionW@16 InternetReadFile@16
        InternetSetCookieW@12 InternetSetOptionW@16 InternetSetStatusCallbackW@8 InternetWriteFile@16)
    # src/common/delayed_libraries.cpp says where they are loaded from; the linker's own empty answer comes after it.
    set(delayed_hook -Wl,-u,__pfnDliNotifyHook2)
    if(CMAKE_SIZEOF_VOID_P EQUAL 4)
        set(delayed_hook -Wl,-u,___pfnDliNotifyHook2)
    endif()
    # First: what they have is not looked for in the usual libraries, which the toolkit names too.
    list(APPEND wx_archives ${wx_libs})
    list(FILTER wx_archives EXCLUDE REGEX "^-l")
    list(FILTER wx_libs INCLUDE REGEX "^-l")
    add_library(glimmer_dep_wx INTERFACE)
    add_library(glimmer::wx ALIAS glimmer_dep_wx)
    foreach(option IN LISTS wx_cxx)
        if(option MATCHES "^-I(.*)")
            target_include_directories(glimmer_dep_wx SYSTEM INTERFACE ${CMAKE_MATCH_1})
        elseif(option MATCHES "^-D(.*)")
            target_compile_definitions(glimmer_dep_wx INTERFACE ${CMAKE_MATCH_1})
        endif()
    endforeach()
    target_link_libraries(glimmer_dep_wx INTERFACE ${delayed_hook} ${wx_archives} ${delayed_comdlg32} ${delayed_winspool}
        ${delayed_oleacc} ${delayed_winmm} ${delayed_wininet} ${wx_libs} PNG::PNG JPEG::JPEG ZLIB::ZLIB comctl32 uxtheme oleacc)
endif()
