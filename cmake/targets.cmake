# The vocabulary of the folders' CMakeLists.txt.

# Adds sources to the core: no window, no <windows.h>, no wxWidgets; built natively too.
function(glimmer_core_sources)
    foreach(source IN LISTS ARGN)
        target_sources(glimmer_core PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/${source})
    endforeach()
endfunction()

# Adds sources to the application: forms and everything else that needs the system. Windows only.
function(glimmer_app_sources)
    if(WIN32)
        foreach(source IN LISTS ARGN)
            target_sources(glimmer_app PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/${source})
        endforeach()
    endif()
endfunction()

# WITHOUT_MANIFEST among the sources: a program as some hosts are, with the old common controls and unaware of scaling.
function(glimmer_test_program name kind)
    cmake_parse_arguments(arg "WITHOUT_MANIFEST" "" "" ${ARGN})
    add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE glimmer_warnings GTest::gtest GTest::gmock)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    if(NOT WIN32)
        target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/leaks.cpp)
    else()
        if(NOT arg_WITHOUT_MANIFEST)
            glimmer_resources(${name} launcher)
        endif()
        target_link_options(${name} PRIVATE -static)
        set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    endif()
    add_test(NAME ${kind}.${name} COMMAND ${name} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
    set_tests_properties(${kind}.${name} PROPERTIES LABELS ${kind} TIMEOUT 600)
endfunction()

# A test of the core: runs natively under sanitizers and again as a Windows program under Wine.
function(glimmer_core_test name)
    if(WIN32)
        glimmer_test_program(${name} windows-core ${ARGN})
    else()
        glimmer_test_program(${name} core ${ARGN})
    endif()
    target_link_libraries(${name} PRIVATE glimmer_core GTest::gtest_main)
endfunction()

# A test of the application's own classes and forms, in a program that has the toolkit running.
function(glimmer_windows_test name)
    if(WIN32)
        if(NOT TARGET glimmer_windows_test_support)
            # The main function, what drives forms and dialogs, what runs other readers.
            add_library(glimmer_windows_test_support OBJECT
                ${PROJECT_SOURCE_DIR}/tests/support/windows/dialog_driver.cpp
                ${PROJECT_SOURCE_DIR}/tests/support/windows/forms.cpp
                ${PROJECT_SOURCE_DIR}/tests/support/windows/native_tool.cpp
                ${PROJECT_SOURCE_DIR}/tests/support/windows/wx_test_main.cpp)
            target_include_directories(glimmer_windows_test_support PRIVATE ${PROJECT_SOURCE_DIR}/tests)
            target_link_libraries(glimmer_windows_test_support PRIVATE glimmer_app GTest::gtest)
        endif()
        glimmer_test_program(${name} windows ${ARGN})
        target_link_libraries(${name} PRIVATE glimmer_windows_test_support glimmer_test_objects
            glimmer_app glimmer_core glimmer_app psapi)
        # Windows share the screen, the keyboard and the clipboard.
        set_tests_properties(windows.${name} PROPERTIES RUN_SERIAL ON)
    endif()
endfunction()

# A test that loads glimmerpad.dll as a host does and links nothing of it. It has a plain message loop and a watchdog.
function(glimmer_host_test name)
    if(WIN32)
        if(NOT TARGET glimmer_host_test_support)
            add_library(glimmer_host_test_support OBJECT
                ${PROJECT_SOURCE_DIR}/tests/support/child_process.cpp
                ${PROJECT_SOURCE_DIR}/tests/support/windows/host_windows.cpp
                ${PROJECT_SOURCE_DIR}/tests/support/windows/hosted_library.cpp
                ${PROJECT_SOURCE_DIR}/tests/support/windows/import_patch.cpp
                ${PROJECT_SOURCE_DIR}/tests/support/windows/watchdog.cpp)
            target_include_directories(glimmer_host_test_support PUBLIC
                ${PROJECT_SOURCE_DIR}/tests ${PROJECT_SOURCE_DIR}/include)
            target_link_libraries(glimmer_host_test_support PUBLIC glimmer_warnings GTest::gtest)
        endif()
        glimmer_test_program(${name} host ${ARGN} ${PROJECT_SOURCE_DIR}/tests/support/windows/host_test_main.cpp)
        target_link_libraries(${name} PRIVATE
            glimmer_host_test_support glimmer_test_objects PNG::PNG ZLIB::ZLIB psapi crypt32)
        add_dependencies(${name} glimmerpad glimmerpad_launcher demo_host)
        # What hangs ends by itself; this is for what cannot even do that.
        set_tests_properties(host.${name} PROPERTIES RUN_SERIAL ON TIMEOUT 400)
    endif()
endfunction()
