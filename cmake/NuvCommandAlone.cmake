# NUV_COMMAND_ALONE: the command nuvlp is linked without shared libraries. Loading them takes more than
# half of the time of a small model. The presets of those who build for their own machine ask for it; a
# distribution wants shared libraries.
#
# The rooms link nuv_fmt, nuv_gmp and nuv_zlib, which are the shared libraries but in a target that has the
# property NUV_ALONE. Few systems have a static fmt; it is compiled then, as one source.
find_package(fmt REQUIRED)
find_package(ZLIB REQUIRED)

# Whether a program can be linked so here, and runs.
function(nuv_try_alone result)
    set(${result} OFF PARENT_SCOPE)
    if(NOT CMAKE_SYSTEM_NAME STREQUAL "Linux" OR CMAKE_CROSSCOMPILING OR CMAKE_CXX_FLAGS MATCHES "-fsanitize")
        return()
    endif()
    find_library(NUV_STATIC_FMT_LIBRARY libfmt.a)
    find_library(NUV_STATIC_GMP_LIBRARY libgmp.a)
    find_library(NUV_STATIC_ZLIB_LIBRARY libz.a)
    mark_as_advanced(NUV_STATIC_FMT_LIBRARY NUV_STATIC_GMP_LIBRARY NUV_STATIC_ZLIB_LIBRARY)
    find_library(NUV_GMP_LIBRARY gmp)
    # The templates that a source of fmt has to instantiate are known for one version.
    if(NOT NUV_STATIC_ZLIB_LIBRARY OR (NUV_GMP_LIBRARY AND NOT NUV_STATIC_GMP_LIBRARY)
       OR NOT (NUV_STATIC_FMT_LIBRARY OR fmt_VERSION MATCHES "^9[.]"))
        return()
    endif()
    set(CMAKE_REQUIRED_FLAGS -std=c++20)
    set(CMAKE_REQUIRED_LINK_OPTIONS -static)
    include(CheckCXXSourceRuns)
    # Threads ended a static program at once before version 2.34 of the C library.
    check_cxx_source_runs(
        "#include <thread>
         int main() { int result = 1; std::thread([&] { result = 0; }).join(); return result; }"
        NUV_RUNS_ALONE)
    set(${result} ${NUV_RUNS_ALONE} PARENT_SCOPE)
endfunction()

option(NUV_COMMAND_ALONE "Link the command nuvlp without shared libraries, where that is possible" OFF)
set(nuv_alone OFF)
if(NUV_COMMAND_ALONE AND NUV_BUILD_TOOLS)
    nuv_try_alone(nuv_alone)
endif()

# nuv_library(<target> <shared> <static>)
function(nuv_library target shared static)
    add_library(${target} INTERFACE)
    target_link_libraries(
        ${target} INTERFACE $<IF:$<BOOL:$<TARGET_PROPERTY:NUV_ALONE>>,${static},${shared}>)
endfunction()
nuv_library(nuv_zlib ZLIB::ZLIB "${NUV_STATIC_ZLIB_LIBRARY}")
if(NUV_STATIC_FMT_LIBRARY)
    nuv_library(nuv_fmt fmt::fmt "${NUV_STATIC_FMT_LIBRARY}")
else()
    nuv_library(nuv_fmt fmt::fmt nuv_fmt_alone)
endif()
if(nuv_alone AND NOT NUV_STATIC_FMT_LIBRARY)
    add_library(nuv_fmt_alone STATIC cmake/Format.cpp)
    target_compile_features(nuv_fmt_alone PRIVATE cxx_std_20)
    target_include_directories(
        nuv_fmt_alone SYSTEM PUBLIC $<TARGET_PROPERTY:fmt::fmt,INTERFACE_INCLUDE_DIRECTORIES>)
endif()
