# The model layer as those have it who install it: the objects of its rooms in one library, static or shared
# as the core's is, and the headers that a program reaches. In this tree Nuv::Model is the rooms themselves.
set(NUV_MODEL_ROOMS nuv_algebra nuv_model nuv_io nuv_sparse_simplex nuv_basis_file nuv_certificate nuv_vipr nuv_exact nuv_solve
                    nuv_report nuv_c_interface)

# Those that users include, and those that these include: neither Boost nor GMP is among them.
set(NUV_MODEL_HEADERS
    Nuv/Algebra/ExactNumber.hpp
    Nuv/Algebra/Index.hpp
    Nuv/Certificate/Status.hpp
    Nuv/Exact/Sensitivity.hpp
    Nuv/Exact/StageRecord.hpp
    Nuv/Io/Basis/MpsBasisReader.hpp
    Nuv/Io/Basis/MpsBasisWriter.hpp
    Nuv/Io/Diagnostics.hpp
    Nuv/Io/Lp/LpReader.hpp
    Nuv/Io/Lp/LpWriter.hpp
    Nuv/Io/ModelFile.hpp
    Nuv/Io/Mps/MpsReader.hpp
    Nuv/Io/Mps/MpsWriter.hpp
    Nuv/Io/ReadResult.hpp
    Nuv/Io/WriteResult.hpp
    Nuv/Model/Error.hpp
    Nuv/Model/ExactNumbers.hpp
    Nuv/Model/Expression.hpp
    Nuv/Model/Handle.hpp
    Nuv/Model/Model.hpp
    Nuv/Model/NameTable.hpp
    Nuv/Model/NuvBatch.h
    Nuv/Model/NuvClaim.h
    Nuv/Model/NuvModel.h
    Nuv/Model/NuvModelTypes.h
    Nuv/Model/NuvRepair.h
    Nuv/Model/NuvSolution.h
    Nuv/Report/JsonReport.hpp
    Nuv/Report/TextReport.hpp
    Nuv/Solve/Repair.hpp
    Nuv/Solve/Scaling.hpp
    Nuv/Solve/SinglePrecisionResult.hpp
    Nuv/Solve/Solution.hpp
    Nuv/Solve/SolveOptions.hpp
    Nuv/Solve/Solver.hpp
    Nuv/Solve/Uniqueness.hpp
    Nuv/SparseSimplex/Basis.hpp
    Nuv/SparseSimplex/SolveControl.hpp)

set(nuv_model_objects)
foreach(room IN LISTS NUV_MODEL_ROOMS)
    list(APPEND nuv_model_objects $<TARGET_OBJECTS:${room}>)
endforeach()
find_package(fmt REQUIRED)
find_package(ZLIB REQUIRED)

# The version of the C interface is that of the soname.
nuv_soname_version(nuv_model_interface)
configure_file(abi/model.map.in ${PROJECT_BINARY_DIR}/model.map @ONLY)

# The libraries that the rooms' sources use; a program that links the static library links them too.
function(nuv_link_model target)
    target_link_libraries(${target} PRIVATE fmt::fmt ZLIB::ZLIB)
    if(NUV_USE_GMP)
        target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:${NUV_GMP_LIBRARY}> $<INSTALL_INTERFACE:gmp>)
    endif()
    # A shared library exports what the headers promise, and nothing of the libraries inlined into it.
    get_target_property(type ${target} TYPE)
    if(type STREQUAL SHARED_LIBRARY AND NOT MSVC AND NOT APPLE)
        target_link_options(
            ${target} PRIVATE -Wl,--version-script=${PROJECT_BINARY_DIR}/model.map -Wl,--no-undefined)
        set_property(TARGET ${target} PROPERTY LINK_DEPENDS ${PROJECT_BINARY_DIR}/model.map)
    endif()
endfunction()

add_library(NuvModel ${nuv_model_objects})
set_target_properties(NuvModel PROPERTIES EXPORT_NAME Model LINKER_LANGUAGE CXX)
target_include_directories(NuvModel INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_compile_features(NuvModel INTERFACE cxx_std_20)
target_link_libraries(NuvModel PRIVATE NuvLinearProgramming)
nuv_link_model(NuvModel)
nuv_soname(NuvModel)

if(NUV_INSTALL)
    install(
        TARGETS NuvModel
        EXPORT NuvModelTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(EXPORT NuvModelTargets NAMESPACE Nuv:: DESTINATION ${nuv_package_directory})
    nuv_install_headers(${NUV_MODEL_HEADERS})

    set(nuv_model_requires "nuv-linear-programming fmt zlib")
    if(NUV_USE_GMP)
        string(APPEND nuv_model_requires " gmp")
    endif()
    # The shared library brings along what it needs; whoever links the static one has to name it.
    get_target_property(type NuvModel TYPE)
    if(type STREQUAL SHARED_LIBRARY)
        set(nuv_model_requires_key Requires.private)
    else()
        set(nuv_model_requires_key Requires)
        set(nuv_model_runtime " -l${nuv_cxx_runtime} -lm")
    endif()
    nuv_install_pkgconfig(nuv-model)
endif()
