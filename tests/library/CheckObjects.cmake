# cmake -DNM=... -DOBJDUMP=... "-DOBJECTS=file;file" -DINSTRUMENTED=... -P CheckObjects.cmake
#
# The library's objects ask for the C library alone: no symbol of a C++ runtime is undefined in them,
# and none runs code before main. A sanitizer's own constructors (INSTRUMENTED) are not the library's.

set(count 0)
foreach(object IN LISTS OBJECTS)
    execute_process(
        COMMAND ${NM} -u --format=posix ${object} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "(^|\n)(_Z|__cxa|__gxx|__dynamic_cast|_Unwind)[^ \n]*" runtime "${symbols}")
    if(runtime)
        message(SEND_ERROR "${object} needs a C++ runtime: ${runtime}")
    endif()
    execute_process(
        COMMAND ${OBJDUMP} -h ${object} OUTPUT_VARIABLE sections COMMAND_ERROR_IS_FATAL ANY)
    if(NOT INSTRUMENTED AND sections MATCHES "\\.(init_array|ctors|fini_array|dtors)")
        message(SEND_ERROR "${object} runs code before or after main: ${CMAKE_MATCH_0}")
    endif()
    math(EXPR count "${count} + 1")
endforeach()
if(count EQUAL 0)
    message(FATAL_ERROR "no objects to look at")
endif()
message(STATUS "${count} objects need no C++ runtime")
