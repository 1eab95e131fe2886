# cmake -DNM=... -DLIBRARY=... "-DPROMISES=file;file" -DFEWEST=... ["-DHEADERS=file;file"] -P CompareExports.cmake
#
# What the shared library exports is what the lists name: nothing missing, nothing extra. With HEADERS, C++ is not
# counted, and the lists name what these headers declare.
cmake_minimum_required(VERSION 3.22)

execute_process(
    COMMAND ${NM} -D --defined-only --format=posix ${LIBRARY} OUTPUT_VARIABLE symbols
    COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "\n$" "" symbols "${symbols}")
string(REPLACE "\n" ";" symbols "${symbols}")
# A linker may list what is local to the library as well: text and data of small letters.
list(FILTER symbols EXCLUDE REGEX "^[^ ]+ [bdrt] ")
set(exported)
foreach(symbol IN LISTS symbols)
    string(REGEX REPLACE "[ @].*" "" name "${symbol}")
    list(APPEND exported ${name})
endforeach()
if(HEADERS)
    # Mangled names, and those of the versions.
    list(FILTER exported EXCLUDE REGEX "^(_Z|NUV_)")
endif()

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
if(promised_count LESS FEWEST)
    message(FATAL_ERROR "the lists name ${promised_count} functions: they are not what they were")
endif()
if(missing OR extra)
    list(JOIN missing "\n  " missing)
    list(JOIN extra "\n  " extra)
    message(FATAL_ERROR "promised, but not exported:\n  ${missing}\nexported, but not promised:\n  ${extra}")
endif()
set(declared)
foreach(file IN LISTS HEADERS)
    file(READ ${file} header)
    string(REGEX REPLACE "//[^\n]*" "" header "${header}")
    string(REGEX MATCHALL "NUV_MODEL_API[^(;]*[(]" starts "${header}")
    foreach(start IN LISTS starts)
        string(REGEX REPLACE ".*[ *\n]([A-Za-z]+)[(]$" "\\1" name "${start}")
        list(APPEND declared ${name})
    endforeach()
endforeach()
list(SORT declared)
if(HEADERS AND NOT declared STREQUAL promised)
    list(JOIN declared "\n  " declared)
    message(FATAL_ERROR "the list is not, in its order, what the headers declare:\n  ${declared}")
endif()
message(STATUS "${promised_count} functions promised and exported")
