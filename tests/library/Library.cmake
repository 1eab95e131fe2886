# Tests of the built and installed library rather than of its functions.
set(nuv_checks ${PROJECT_SOURCE_DIR}/tests/library)
set(nuv_consume ${PROJECT_SOURCE_DIR}/tests/consumers/Consume.cmake)
set(nuv_prefix ${CMAKE_CURRENT_BINARY_DIR}/prefix)

# The objects of the library, linked as a shared one whatever kind this build makes.
add_library(nuv_shared SHARED $<TARGET_OBJECTS:NuvLinearProgramming>)
set_target_properties(nuv_shared PROPERTIES LINKER_LANGUAGE C OUTPUT_NAME NuvLinearProgramming)
nuv_soname(nuv_shared)

# Undefined symbols would otherwise show only when somebody links the shared library.
if(NOT NUV_IS_SANITIZED AND NOT APPLE)
    target_link_options(nuv_shared PRIVATE -Wl,--no-undefined)
endif()

add_test(
    NAME exported_functions
    COMMAND ${CMAKE_COMMAND} -DNM=${CMAKE_NM} -DLIBRARY=$<TARGET_FILE:nuv_shared>
            "-DPROMISES=${PROJECT_SOURCE_DIR}/abi/exports.txt;${PROJECT_SOURCE_DIR}/abi/additions.txt" -DFEWEST=800 -P
            ${nuv_checks}/CompareExports.cmake)
add_test(
    NAME version
    COMMAND ${CMAKE_COMMAND} -DVERSION=${PROJECT_VERSION} -DSOURCE_DIR=${PROJECT_SOURCE_DIR}
            -DREADELF=${CMAKE_READELF} -DLIBRARY=$<TARGET_FILE:nuv_shared> -P
            ${nuv_checks}/CheckVersion.cmake)
add_test(
    NAME rooms COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${PROJECT_SOURCE_DIR} -P ${nuv_checks}/CheckRooms.cmake)
# What follows is about the library that users get, which the sanitizers' one is not.
if(NUV_IS_SANITIZED)
    return()
endif()

add_test(
    NAME no_cxx_runtime
    COMMAND ${CMAKE_COMMAND} -DNM=${CMAKE_NM} -DOBJDUMP=${CMAKE_OBJDUMP}
            "-DOBJECTS=$<TARGET_OBJECTS:NuvLinearProgramming>" -P ${nuv_checks}/CheckObjects.cmake)

# The model layer as a shared library, of the same objects.
add_library(nuv_model_shared SHARED ${nuv_model_objects})
set_target_properties(nuv_model_shared PROPERTIES LINKER_LANGUAGE CXX OUTPUT_NAME NuvModel)
target_link_libraries(nuv_model_shared PRIVATE nuv_shared)
nuv_link_model(nuv_model_shared)
nuv_soname(nuv_model_shared)
add_test(
    NAME exported_functions_model
    COMMAND ${CMAKE_COMMAND} -DNM=${CMAKE_NM} -DLIBRARY=$<TARGET_FILE:nuv_model_shared>
            -DPROMISES=${PROJECT_SOURCE_DIR}/abi/model-exports.txt -DFEWEST=50
            "-DHEADERS=${PROJECT_SOURCE_DIR}/Nuv/Model/NuvBatch.h;${PROJECT_SOURCE_DIR}/Nuv/Model/NuvModelTypes.h;${PROJECT_SOURCE_DIR}/Nuv/Model/NuvClaim.h;${PROJECT_SOURCE_DIR}/Nuv/Model/NuvModel.h;${PROJECT_SOURCE_DIR}/Nuv/Model/NuvRepair.h;${PROJECT_SOURCE_DIR}/Nuv/Model/NuvSolution.h"
            -P ${nuv_checks}/CompareExports.cmake)

# Users' projects, built against what lies in an empty prefix after `cmake --install`.
find_program(NUV_PKG_CONFIG NAMES pkg-config pkgconf REQUIRED)
function(nuv_consumer_test name kind work_dir)
    add_test(
        NAME ${name}
        COMMAND ${CMAKE_COMMAND} -DKIND=${kind} -DWORK_DIR=${work_dir} -DPREFIX=${nuv_prefix}
                -DBINARY_DIR=${PROJECT_BINARY_DIR} -DSOURCE_DIR=${PROJECT_SOURCE_DIR}
                -DGENERATOR=${CMAKE_GENERATOR} -DC_COMPILER=${CMAKE_C_COMPILER}
                -DCXX_COMPILER=${CMAKE_CXX_COMPILER} "-DC_FLAGS=${CMAKE_C_FLAGS}"
                "-DCXX_FLAGS=${CMAKE_CXX_FLAGS}" -DREADELF=${CMAKE_READELF}
                -DPKG_CONFIG=${NUV_PKG_CONFIG} -DNM=${CMAKE_NM}
                -DLIBRARY=$<TARGET_FILE:nuv_model_shared> -P ${nuv_consume})
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()
nuv_consumer_test(install install ${nuv_prefix})
set_tests_properties(install PROPERTIES FIXTURES_SETUP installed_library)
nuv_consumer_test(core_configured configured ${CMAKE_CURRENT_BINARY_DIR}/core_configured)
set(consumers pkgconfig package model_c_pkgconfig model_c_package model_c_shared)
if(NOT NUV_QUICK_TESTS)
    list(APPEND consumers model_pkgconfig model_package model_shared)
endif()
foreach(kind IN LISTS consumers)
    nuv_consumer_test(consumer_${kind} ${kind} ${CMAKE_CURRENT_BINARY_DIR}/consumer_${kind})
    set_tests_properties(consumer_${kind} PROPERTIES FIXTURES_REQUIRED installed_library)
endforeach()

# What compiles much is left out of ./test --quick.
if(NUV_QUICK_TESTS)
    return()
endif()
nuv_consumer_test(consumer_subdirectory subdirectory ${CMAKE_CURRENT_BINARY_DIR}/consumer_subdirectory)
nuv_consumer_test(
    consumer_model_subdirectory model_subdirectory ${CMAKE_CURRENT_BINARY_DIR}/consumer_model_subdirectory)

# Both compilers where both are there.
find_program(NUV_OTHER_C_COMPILER NAMES clang clang-14)
find_program(NUV_OTHER_CXX_COMPILER NAMES clang++ clang++-14)
set(nuv_c_compilers ${CMAKE_C_COMPILER})
set(nuv_cxx_compilers ${CMAKE_CXX_COMPILER})
if(NUV_OTHER_C_COMPILER AND NOT CMAKE_C_COMPILER_ID MATCHES "Clang")
    list(APPEND nuv_c_compilers ${NUV_OTHER_C_COMPILER})
endif()
if(NUV_OTHER_CXX_COMPILER AND NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    list(APPEND nuv_cxx_compilers ${NUV_OTHER_CXX_COMPILER})
endif()
add_test(
    NAME installed_headers
    COMMAND ${CMAKE_COMMAND} -DINCLUDE_DIR=${nuv_prefix}/${CMAKE_INSTALL_INCLUDEDIR}
            -DWORK_DIR=${CMAKE_CURRENT_BINARY_DIR}/headers "-DC_COMPILERS=${nuv_c_compilers}"
            "-DCXX_COMPILERS=${nuv_cxx_compilers}" -P ${nuv_checks}/CompileHeaders.cmake)
set_tests_properties(installed_headers PROPERTIES FIXTURES_REQUIRED installed_library)
