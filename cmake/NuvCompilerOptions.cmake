# What the project asks of the compiler beyond its defaults. Each choice hangs on the compiler, never
# on the platform: the same compiler must make the same floats everywhere.

# g++ collects its garbage whenever its memory has doubled. A unit of many sources fits into memory with it: not to
# collect takes a tenth of the time away and a fifth of memory more.
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:--param=ggc-min-heapsize=1048576>")
endif()

# Warnings; errors in the project's own builds only, so that a new compiler never breaks a user's. A tenth of
# the time of compiling goes into finding them.
function(nuv_warnings target)
    if(NOT NUV_WARNINGS)
        return()
    endif()
    if(MSVC)
        target_compile_options(${target} PRIVATE /W4 $<$<BOOL:${NUV_WARNINGS_AS_ERRORS}>:/WX>)
    else()
        target_compile_options(
            ${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                              $<$<BOOL:${NUV_WARNINGS_AS_ERRORS}>:-Werror>)
        # g++ 12 takes the copying inside std::string for overlapping or out of bounds where it is not
        # (its bug 105651, mended in 13). The core has no std::string, and keeps these warnings.
        if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13
           AND NOT target STREQUAL "NuvLinearProgramming")
            target_compile_options(
                ${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict -Wno-stringop-overflow
                                  -Wno-array-bounds>)
        endif()
    endif()
endfunction()

# Products are rounded before they are added. Without this, a compiler may fuse the two where the
# machine has the instruction, and results would depend on the machine.
function(nuv_exact_floats target)
    if(MSVC)
        # /fp:precise is the default, but /fp:fast may come in by CMAKE_CXX_FLAGS; the last one wins.
        target_compile_options(${target} PRIVATE /fp:precise)
    else()
        target_compile_options(${target} PRIVATE -ffp-contract=off)
        # On 32-bit x86 the x87 unit keeps intermediate results in 80 bits; SSE2 rounds each to its
        # type. Elsewhere (x86-64, ARM, WebAssembly) single precision is what the unit computes in.
        if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(i[3-6]86|x86|x86_64|AMD64)$")
            target_compile_options(${target} PRIVATE -msse2 -mfpmath=sse)
        endif()
    endif()
endfunction()

# C++ as a better C: what is left needs the C library alone, so that a C linker links it.
function(nuv_no_cxx_runtime target)
    if(MSVC)
        target_compile_options(${target} PRIVATE /GR- /EHs-c- /Zc:threadSafeInit-)
        target_compile_definitions(${target} PRIVATE _HAS_EXCEPTIONS=0)
    else()
        target_compile_options(
            ${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti
                              -fno-threadsafe-statics>)
    endif()
endfunction()

# Before 1.0 a minor version may change the interface: a program asks for the one that it was linked with.
function(nuv_soname_version result)
    set(soname ${PROJECT_VERSION_MAJOR})
    if(soname EQUAL 0)
        string(APPEND soname .${PROJECT_VERSION_MINOR})
    endif()
    set(${result} ${soname} PARENT_SCOPE)
endfunction()
function(nuv_soname target)
    nuv_soname_version(soname)
    set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${soname})
endfunction()
