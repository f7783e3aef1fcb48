# System libraries that a program loads at the first call of one of their functions, not at its own start: dialogs for
# files and printers, sounds, accessibility. They bring a dozen others along and look for printers and sound cards.
#
# glimmer_delayed_library(OUTPUT DLL NAME@BYTES...): makes an import library for these functions, each with the bytes of
# its arguments, and sets OUTPUT to what has to be linked. A function that is missing here comes from the usual library,
# which is then loaded at the start; tests/package/check_library.sh looks for that.
function(glimmer_delayed_library output dll)
    set(functions ${ARGN})
    if(NOT CMAKE_SIZEOF_VOID_P EQUAL 4)
        list(TRANSFORM functions REPLACE "@.*" "")
    endif()
    string(JOIN "\n" text "LIBRARY ${dll}" EXPORTS ${functions} "")
    string(REGEX REPLACE "\\..*" "" name ${dll})
    string(TOLOWER ${name} name)
    set(folder ${CMAKE_BINARY_DIR}/delayed)
    file(CONFIGURE OUTPUT ${folder}/${name}.def CONTENT "${text}" @ONLY)
    execute_process(COMMAND ${CMAKE_DLLTOOL} --kill-at --input-def ${name}.def --output-delaylib ${name}.a
                    WORKING_DIRECTORY ${folder} COMMAND_ERROR_IS_FATAL ANY)
    # The linker takes the piece of code that loads the library for one that nobody calls, and drops it, unless it is
    # asked for by name.
    set(underscore "")
    if(CMAKE_SIZEOF_VOID_P EQUAL 4)
        set(underscore _)
    endif()
    list(TRANSFORM functions PREPEND -Wl,-u,${underscore})
    set(${output} ${folder}/${name}.a ${functions} PARENT_SCOPE)
endfunction()
