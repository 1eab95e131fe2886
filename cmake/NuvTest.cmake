# nuv_test(<name> [FULL] SOURCES <files> [LIBRARIES <targets>] [LABELS <labels>] [TIMEOUT <seconds>])
#
# One test program for one subject, and one ctest entry of the same name that runs all of it. FULL: what
# ./test --quick neither builds nor runs, since a quick subject holds the same promises for fewer cases. Label a
# subject `valgrind` when it is to run under memcheck as well, which costs about 30 times its time:
# that is one more entry, `<name>_memcheck`, which only `ctest -C memcheck -L memcheck` runs. Each entry
# carries the name of its folder under tests/ as a label as well: `ctest -LE core` runs what a change above
# the core can break.
option(NUV_QUICK_TESTS "Without the tests that are FULL, and a share of the random cases of the others" OFF)
mark_as_advanced(NUV_QUICK_TESTS)
find_program(NUV_VALGRIND valgrind)

# Random cases run in full in an ordinary build; where each takes many times as long, and in quick runs, a share.
string(FIND "${CMAKE_CXX_FLAGS}" "-fsanitize=" sanitizers)
if(sanitizers EQUAL -1)
    set(NUV_IS_SANITIZED OFF)
else()
    set(NUV_IS_SANITIZED ON)
endif()
set(NUV_SHARE_UNDER_TOOLS "NUV_TEST_SHARE=10")
if(NUV_IS_SANITIZED)
    set(NUV_SHARE ${NUV_SHARE_UNDER_TOOLS})
elseif(NUV_QUICK_TESTS)
    set(NUV_SHARE "NUV_TEST_SHARE=5")
else()
    set(NUV_SHARE)
endif()

# A test is run once and compiled each time: half the time goes into optimising it. The library under
# test keeps its flags.
function(nuv_test_flags target)
    target_compile_features(${target} PRIVATE cxx_std_20)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    if(NOT MSVC)
        target_compile_options(${target} PRIVATE $<$<NOT:$<CONFIG:Debug>>:-O0>)
    endif()
    nuv_warnings(${target})
    # A test's own reference evaluation must round as the library does.
    nuv_exact_floats(${target})
endfunction()

# <gtest/gtest.h> is half of a test's compile time: it is compiled once and shared. Headers of this tree
# are not, since with them every change of one would compile all tests anew.
add_library(nuv_test_precompiled STATIC ${PROJECT_SOURCE_DIR}/tests/support/Precompiled.cpp)
target_link_libraries(nuv_test_precompiled PRIVATE GTest::gtest)
target_precompile_headers(nuv_test_precompiled PRIVATE <gtest/gtest.h>)
nuv_test_flags(nuv_test_precompiled)

function(nuv_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "FULL" "TIMEOUT" "SOURCES;LIBRARIES;LABELS")
    if(NOT arg_SOURCES OR arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "nuv_test(${name}): SOURCES is missing or an argument is unknown")
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set(target test_${name})
    add_executable(${target} ${arg_SOURCES})
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
    target_compile_definitions(
        ${target} PRIVATE NUV_TEST_MODELS="${PROJECT_SOURCE_DIR}/tests/models"
                          $<$<BOOL:${NUV_QUICK_TESTS}>:NUV_QUICK_TESTS>)
    target_link_libraries(${target} PRIVATE ${arg_LIBRARIES} GTest::gtest_main)
    target_precompile_headers(${target} REUSE_FROM nuv_test_precompiled)
    nuv_test_flags(${target})
    if(arg_FULL AND NUV_QUICK_TESTS)
        set_target_properties(${target} PROPERTIES EXCLUDE_FROM_ALL ON)
        return()
    endif()
    add_test(NAME ${name} COMMAND ${target} --gtest_brief=1)
    file(RELATIVE_PATH room ${PROJECT_SOURCE_DIR}/tests ${CMAKE_CURRENT_SOURCE_DIR})
    string(REGEX REPLACE "/.*" "" room "${room}")
    # The longest begin first, so that none is left over when the others are done.
    set_tests_properties(
        ${name} PROPERTIES TIMEOUT ${arg_TIMEOUT} COST ${arg_TIMEOUT} LABELS "${room};${arg_LABELS}")
    if(NUV_SHARE)
        set_tests_properties(${name} PROPERTIES ENVIRONMENT ${NUV_SHARE})
    endif()
    if(NUV_VALGRIND AND "valgrind" IN_LIST arg_LABELS)
        add_test(
            NAME ${name}_memcheck
            CONFIGURATIONS memcheck
            COMMAND ${NUV_VALGRIND} --quiet --error-exitcode=99 --leak-check=full
                    --errors-for-leak-kinds=definite $<TARGET_FILE:${target}> --gtest_brief=1)
        set_tests_properties(${name}_memcheck PROPERTIES TIMEOUT 300 LABELS memcheck
                                                         ENVIRONMENT ${NUV_SHARE_UNDER_TOOLS})
    endif()
endfunction()
