# Builds and runs one user's project: cmake -DKIND=... -D... -P Consume.cmake
#
# KIND       install: puts the libraries into the empty PREFIX; pkgconfig, package: use what lies there;
#            subdirectory: takes SOURCE_DIR in; configured: configures SOURCE_DIR itself, the core alone
#            model_pkgconfig, model_package, model_subdirectory: the same for the model layer;
#            model_shared: links the shared library LIBRARY; model_c_...: the same from C
# The rest   BINARY_DIR (the library's build), WORK_DIR (wiped), the compilers and flags of that build
cmake_minimum_required(VERSION 3.22)

function(run)
    execute_process(
        COMMAND ${ARGV} WORKING_DIRECTORY ${WORK_DIR} OUTPUT_VARIABLE output ERROR_VARIABLE output
        RESULT_VARIABLE result)
    message(STATUS "${output}")
    if(NOT result EQUAL 0)
        list(JOIN ARGV " " command)
        message(FATAL_ERROR "failed (${result}): ${command}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect_answer program)
    run(${program})
    if(NOT output STREQUAL "16 at (4, 2)\n")
        message(FATAL_ERROR "expected 16 at (4, 2)")
    endif()
endfunction()

function(expect_plan program)
    run(${program})
    set(model "Maximize\n 30 chairs + 70 tables\nSubject To\n wood: 2 chairs + 5 tables <= 300\n")
    string(APPEND model " labour: 4 chairs + 3 tables <= 240\nEnd\n")
    set(answer "optimal: 29700/7 with 21.4286 and 51.4286\n")
    if(NOT output STREQUAL "${model}${answer}")
        message(FATAL_ERROR "expected ${model}${answer}")
    endif()
endfunction()

function(expect_factory program)
    run(${program})
    file(READ ${SOURCE_DIR}/examples/printed/factory.txt printed)
    if(NOT output STREQUAL printed)
        message(FATAL_ERROR "expected\n${printed}")
    endif()
endfunction()

# Compiles a program with what pkg-config says of the package, in a copy of the prefix: nothing in it may
# remember where it was installed.
function(build_by_pkgconfig package compiler flags program)
    set(moved ${WORK_DIR}/moved)
    file(COPY ${PREFIX}/ DESTINATION ${moved})
    file(GLOB_RECURSE packages ${moved}/${package}.pc)
    list(LENGTH packages count)
    if(NOT count EQUAL 1)
        message(FATAL_ERROR "one pkg-config file expected, found: ${packages}")
    endif()
    cmake_path(GET packages PARENT_PATH directory)
    set(ENV{PKG_CONFIG_PATH} ${directory})
    run(${PKG_CONFIG} --cflags ${package})
    separate_arguments(compile_flags UNIX_COMMAND "${flags} ${output}")
    run(${PKG_CONFIG} --libs ${package})
    separate_arguments(link_flags UNIX_COMMAND "${output}")
    cmake_path(GET directory PARENT_PATH libraries)
    run(${compiler} -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror ${compile_flags} ${program} -o
        ${WORK_DIR}/consumer ${link_flags} -Wl,-rpath,${libraries})
endfunction()

# The program and the libraries that it names itself; what a sanitizer's runtime needs is its own.
function(expect_no_cxx_runtime program)
    run(${READELF} --dynamic ${program})
    if(output MATCHES "NEEDED[^\n]*(stdc\\+\\+|libc\\+\\+|libgcc_s)")
        message(FATAL_ERROR "a C++ runtime is linked in: ${CMAKE_MATCH_0}")
    endif()
    if(NOT output MATCHES "NEEDED[^\n]*libc\\.")
        message(FATAL_ERROR "the C library is not among what ${program} needs")
    endif()
endfunction()

function(build_project directory)
    run(${CMAKE_COMMAND} -S ${directory} -B ${WORK_DIR} -G ${GENERATOR}
        -DCMAKE_C_COMPILER=${C_COMPILER} -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
        -DCMAKE_C_FLAGS=${C_FLAGS} -DCMAKE_CXX_FLAGS=${CXX_FLAGS} ${ARGN})
    run(${CMAKE_COMMAND} --build ${WORK_DIR} --target consumer)
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})

if(KIND STREQUAL "install")
    run(${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${WORK_DIR})
    foreach(internal Phases.h Kernels.h NuvElement.hpp)
        file(GLOB_RECURSE found ${WORK_DIR}/include/${internal} ${WORK_DIR}/include/*.inl)
        if(found)
            message(FATAL_ERROR "installed, but not for users: ${found}")
        endif()
    endforeach()
elseif(KIND STREQUAL "pkgconfig")
    build_by_pkgconfig(
        nuv-linear-programming ${C_COMPILER} "-std=c11 ${C_FLAGS}"
        ${CMAKE_CURRENT_LIST_DIR}/pkgconfig/main.c)
    expect_no_cxx_runtime(${WORK_DIR}/consumer)
    expect_answer(${WORK_DIR}/consumer)
elseif(KIND STREQUAL "package")
    build_project(${CMAKE_CURRENT_LIST_DIR}/package -DCMAKE_PREFIX_PATH=${PREFIX})
    expect_answer(${WORK_DIR}/consumer)
elseif(KIND STREQUAL "subdirectory")
    build_project(${CMAKE_CURRENT_LIST_DIR}/subdirectory -DNUV_SOURCE_DIR=${SOURCE_DIR})
    expect_no_cxx_runtime(${WORK_DIR}/consumer)
    expect_answer(${WORK_DIR}/consumer)
elseif(KIND STREQUAL "model_pkgconfig")
    build_by_pkgconfig(
        nuv-model ${CXX_COMPILER} "-std=c++20 ${CXX_FLAGS}" ${CMAKE_CURRENT_LIST_DIR}/model/main.cpp)
    expect_plan(${WORK_DIR}/consumer)
elseif(KIND STREQUAL "model_package")
    build_project(${CMAKE_CURRENT_LIST_DIR}/model -DCMAKE_PREFIX_PATH=${PREFIX})
    expect_plan(${WORK_DIR}/consumer)
elseif(KIND STREQUAL "model_c_pkgconfig")
    build_by_pkgconfig(nuv-model ${C_COMPILER} "-std=c11 ${C_FLAGS}" ${SOURCE_DIR}/examples/factory.c)
    expect_factory(${WORK_DIR}/consumer)
elseif(KIND STREQUAL "model_c_package")
    build_project(
        ${CMAKE_CURRENT_LIST_DIR}/model_c -DCMAKE_PREFIX_PATH=${PREFIX}
        -DNUV_CONSUMER=${SOURCE_DIR}/examples/factory.c)
    expect_factory(${WORK_DIR}/consumer)
elseif(KIND STREQUAL "model_c_shared")
    # A C compiler links it, and no C++ runtime is named on the way.
    cmake_path(GET LIBRARY PARENT_PATH directory)
    separate_arguments(compile_flags UNIX_COMMAND "${C_FLAGS}")
    run(${C_COMPILER} -std=c11 ${compile_flags} -I${PREFIX}/include ${SOURCE_DIR}/examples/factory.c -o
        ${WORK_DIR}/consumer ${LIBRARY} -Wl,-rpath,${directory})
    expect_factory(${WORK_DIR}/consumer)
elseif(KIND STREQUAL "model_subdirectory")
    build_project(${CMAKE_CURRENT_LIST_DIR}/model -DNUV_SOURCE_DIR=${SOURCE_DIR})
    expect_plan(${WORK_DIR}/consumer)
elseif(KIND STREQUAL "model_shared")
    # It exports what the program needs, and no name that is not the project's own.
    cmake_path(GET LIBRARY PARENT_PATH directory)
    separate_arguments(compile_flags UNIX_COMMAND "${CXX_FLAGS}")
    run(${CXX_COMPILER} -std=c++20 ${compile_flags} -I${PREFIX}/include
        ${CMAKE_CURRENT_LIST_DIR}/model/main.cpp -o ${WORK_DIR}/consumer ${LIBRARY} -Wl,-rpath,${directory})
    expect_plan(${WORK_DIR}/consumer)
    run(${NM} --dynamic --defined-only --demangle ${LIBRARY})
    string(REGEX MATCHALL "[^\n]+" symbols "${output}")
    list(FILTER symbols EXCLUDE REGEX " (nuv::|[a-z ]* for nuv::|Nuv|NUV)")
    if(symbols)
        list(JOIN symbols "\n  " symbols)
        message(FATAL_ERROR "exported, but not the project's own:\n  ${symbols}")
    endif()
elseif(KIND STREQUAL "configured")
    # For whoever builds it, without our presets. Nothing is found, whatever is looked for.
    run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR} -G ${GENERATOR}
        -DCMAKE_C_COMPILER=${C_COMPILER} -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DNUV_BUILD_TESTS=OFF
        -DNUV_BUILD_BENCHMARKS=OFF -DNUV_BUILD_TOOLS=OFF -DCMAKE_FIND_ROOT_PATH=${WORK_DIR}/nothing
        -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=ONLY -DCMAKE_FIND_ROOT_PATH_MODE_LIBRARY=ONLY
        -DCMAKE_FIND_ROOT_PATH_MODE_INCLUDE=ONLY)
    file(STRINGS ${WORK_DIR}/CMakeCache.txt strict REGEX "^NUV_WARNINGS_AS_ERRORS:")
    if(NOT strict STREQUAL "NUV_WARNINGS_AS_ERRORS:BOOL=OFF")
        message(FATAL_ERROR "a warning of a new compiler would be a user's error: ${strict}")
    endif()
else()
    message(FATAL_ERROR "KIND is '${KIND}'")
endif()
