# The yardstick and its models: the solve evaluated once more, independently of the library.
add_library(
    nuv_test_reference STATIC EXCLUDE_FROM_ALL
    ${CMAKE_CURRENT_LIST_DIR}/CoreSolve.cpp ${CMAKE_CURRENT_LIST_DIR}/NaiveMatrix.cpp
    ${CMAKE_CURRENT_LIST_DIR}/NaiveSimplex.cpp ${CMAKE_CURRENT_LIST_DIR}/PlainModel.cpp
    ${CMAKE_CURRENT_LIST_DIR}/RandomEditing.cpp)
target_link_libraries(nuv_test_reference PUBLIC Nuv::Corpus Nuv::LinearProgramming)
target_compile_features(nuv_test_reference PUBLIC cxx_std_20)
set_target_properties(nuv_test_reference PROPERTIES CXX_EXTENSIONS OFF)
target_include_directories(nuv_test_reference PUBLIC ${PROJECT_SOURCE_DIR})
nuv_warnings(nuv_test_reference)
nuv_exact_floats(nuv_test_reference)
# The yardstick is not what is under test: it is optimised, and left out of what sanitizers watch.
if(NOT MSVC)
    target_compile_options(nuv_test_reference PRIVATE $<$<NOT:$<CONFIG:Debug>>:-O2>)
    if(NUV_IS_SANITIZED)
        target_compile_options(nuv_test_reference PRIVATE -fno-sanitize=all)
    endif()
endif()
