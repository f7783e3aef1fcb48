# Where a cross build finds libraries: in the cache, one folder each, whose names deps/build.sh knows. It is asked each
# time, since a new or changed recipe means another folder. A library that is being built gets only those it needs.
if(DEFINED GLIMMERPAD_LIBRARIES)
    set(CMAKE_FIND_ROOT_PATH ${GLIMMERPAD_LIBRARIES})
else()
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env GLIMMERPAD_HOST=${glimmerpad_host}
                ${CMAKE_CURRENT_LIST_DIR}/../deps/build.sh --list
        OUTPUT_VARIABLE CMAKE_FIND_ROOT_PATH
        OUTPUT_STRIP_TRAILING_WHITESPACE)
endif()
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES GLIMMERPAD_LIBRARIES)
list(APPEND CMAKE_FIND_ROOT_PATH /usr/${glimmerpad_host})
list(REMOVE_ITEM CMAKE_FIND_ROOT_PATH "")
