# cmake -DNM=... -DLIBRARY=... "-DPROMISES=file;file" -P CompareExports.cmake
#
# What the shared library exports is what the lists name: nothing missing, nothing extra.
cmake_minimum_required(VERSION 3.22)

execute_process(
    COMMAND ${NM} -D --defined-only --format=posix ${LIBRARY} OUTPUT_VARIABLE symbols
    COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "\n$" "" symbols "${symbols}")
string(REPLACE "\n" ";" symbols "${symbols}")
set(exported)
foreach(symbol IN LISTS symbols)
    string(REGEX REPLACE " .*" "" name "${symbol}")
    list(APPEND exported ${name})
endforeach()

set(promised)
foreach(file IN LISTS PROMISES)
    file(STRINGS ${file} names REGEX "^[^#]")
    list(APPEND promised ${names})
endforeach()

set(missing ${promised})
list(REMOVE_ITEM missing ${exported})
set(extra ${exported})
list(REMOVE_ITEM extra ${promised})
list(LENGTH promised promised_count)
if(promised_count LESS 800)
    message(FATAL_ERROR "the lists name ${promised_count} functions: they are not what they were")
endif()
if(missing OR extra)
    list(JOIN missing "\n  " missing)
    list(JOIN extra "\n  " extra)
    message(FATAL_ERROR "promised, but not exported:\n  ${missing}\nexported, but not promised:\n  ${extra}")
endif()
message(STATUS "${promised_count} functions promised and exported")
