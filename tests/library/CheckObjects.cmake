# cmake -DNM=... -DOBJDUMP=... "-DOBJECTS=file;file" -P CheckObjects.cmake
#
# The library's objects ask for the C library alone: no symbol of a C++ runtime is left undefined when
# all of them are together, and none runs code before main.
cmake_minimum_required(VERSION 3.22)

# The names that `nm` with the flags given knows in the objects.
function(names_of result)
    execute_process(
        COMMAND ${NM} ${ARGN} --format=posix ${OBJECTS} OUTPUT_VARIABLE symbols
        COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX REPLACE " [^\n]*\n" ";" symbols "${symbols}")
    string(REGEX REPLACE "[^\n;]*:\n" "" symbols "${symbols}")  # the objects' own names
    set(${result} ${symbols} PARENT_SCOPE)
endfunction()

names_of(undefined -u)
names_of(defined --defined-only --extern-only)
execute_process(
    COMMAND ${OBJDUMP} -h ${OBJECTS} OUTPUT_VARIABLE sections COMMAND_ERROR_IS_FATAL ANY)
if(sections MATCHES "\\.(init_array|ctors|fini_array|dtors)")
    message(SEND_ERROR "an object runs code before or after main: ${CMAKE_MATCH_0}")
endif()

list(REMOVE_DUPLICATES undefined)
if(NOT "free" IN_LIST undefined AND NOT "memcpy" IN_LIST undefined)
    message(FATAL_ERROR "not even memcpy is undefined: these are not the library's objects")
endif()
list(REMOVE_ITEM undefined ${defined})
list(FILTER undefined INCLUDE REGEX "^(_Z|__cxa|__gxx|__dynamic_cast|_Unwind)")
if(undefined)
    list(JOIN undefined "\n  " undefined)
    message(FATAL_ERROR "a C++ runtime would be needed for\n  ${undefined}")
endif()
