# The core: the library Nuv::LinearProgramming, its headers and its sources, by name.

# Those that users include, and those that these include.
set(NUV_PUBLIC_HEADERS
    Nuv/Templates/NuvArrayIterator.decl.h
    Nuv/Templates/NuvIterator.decl.h
    Nuv/Templates/NuvList.decl.h
    Nuv/Templates/NuvListIterator.decl.h
    Nuv/Templates/NuvMatrix.decl.h
    Nuv/Templates/NuvMatrixReal.decl.h
    Nuv/Templates/NuvPair.decl.h
    Nuv/Templates/NuvTemplateBegin.h
    Nuv/Templates/NuvTemplateEnd.h
    Nuv/Templates/NuvUnordered.decl.h
    Nuv/Templates/NuvUnorderedBucket.decl.h
    Nuv/Templates/NuvVector.decl.h
    Nuv/Utils/NuvAllocator.h
    Nuv/Utils/NuvAllocatorInline.h
    Nuv/Utils/NuvBaseTypes.h
    Nuv/Utils/NuvLinearProgramming.h
    Nuv/Utils/NuvLinearProgramming.hpp
    Nuv/Utils/NuvLinearProgrammingBatch.h
    Nuv/Utils/NuvLinearProgrammingBatch.hpp
    Nuv/Utils/NuvLinearProgrammingContainers.h
    Nuv/Utils/NuvLinearProgrammingInline.h
    Nuv/Utils/NuvLinearProgrammingMaps.decl.h
    Nuv/Utils/NuvLinearProgrammingMeasure.h
    Nuv/Utils/NuvLinearProgrammingMonitor.h
    Nuv/Utils/NuvLinearProgrammingRecords.h
    Nuv/Utils/NuvLinearProgrammingTerms.decl.h
    Nuv/Utils/NuvPivotLimit.h
    Nuv/Utils/NuvScratchAllocator.h
    Nuv/Utils/NuvStdCLibInline.h
    Nuv/Utils/NuvString.h
    Nuv/Utils/NuvTypes.h
    Nuv/Utils/NuvVersion.h)

set(NUV_CORE_SOURCES
    Nuv/Utils/Batch/Batch.cpp
    Nuv/Utils/Batch/BatchProblem.cpp
    Nuv/Utils/Batch/LaneQueue.cpp
    Nuv/Utils/Batch/LanesAvx2.cpp
    Nuv/Utils/Batch/LanesAvx512.cpp
    Nuv/Utils/Batch/LanesBaseline.cpp
    Nuv/Utils/Batch/LanesPlain.cpp
    Nuv/Utils/Batch/SingleSolve.cpp
    Nuv/Utils/Batch/UnitTableau.cpp
    Nuv/Utils/Kernels/Avx2.cpp
    Nuv/Utils/Kernels/Avx512.cpp
    Nuv/Utils/Kernels/Baseline.cpp
    Nuv/Utils/Kernels/DenseAlgebra.cpp
    Nuv/Utils/Kernels/Kernels.cpp
    Nuv/Utils/Kernels/Plain.cpp
    Nuv/Utils/Memory/ScratchAllocator.cpp
    Nuv/Utils/Memory/Workspace.cpp
    Nuv/Utils/Problem/Containers.cpp
    Nuv/Utils/Problem/Editing.cpp
    Nuv/Utils/Problem/Measure.cpp
    Nuv/Utils/Problem/Object.cpp
    Nuv/Utils/Problem/PivotLimit.cpp
    Nuv/Utils/Problem/Records.cpp
    Nuv/Utils/Problem/String.cpp
    Nuv/Utils/Simplex/BasisInverse.cpp
    Nuv/Utils/Simplex/BasisInversion.cpp
    Nuv/Utils/Simplex/BasisUpdate.cpp
    Nuv/Utils/Simplex/DenseIteration.cpp
    Nuv/Utils/Simplex/DensePricing.cpp
    Nuv/Utils/Simplex/Iteration.cpp
    Nuv/Utils/Simplex/Phases.cpp
    Nuv/Utils/Simplex/Pricing.cpp
    Nuv/Utils/Simplex/SmallIteration.cpp
    Nuv/Utils/Simplex/Solve.cpp
    Nuv/Utils/Simplex/SparsePricing.cpp
    Nuv/Utils/Simplex/StandardForm.cpp
    Nuv/Utils/Simplex/StructuredIteration.cpp)

# Tests of what functions rely on, for debug builds and sanitizers: see Kernels/Assert.h.
option(NUV_ASSERTIONS "Test the invariants of the core as it runs" OFF)
mark_as_advanced(NUV_ASSERTIONS)

# Static, or shared with BUILD_SHARED_LIBS.
add_library(NuvLinearProgramming ${NUV_CORE_SOURCES})
add_library(Nuv::LinearProgramming ALIAS NuvLinearProgramming)
set_target_properties(NuvLinearProgramming PROPERTIES EXPORT_NAME LinearProgramming)
target_include_directories(
    NuvLinearProgramming PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
                                $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
# PRIVATE, because a user's program may be C, or C++ of another year.
target_compile_features(NuvLinearProgramming PRIVATE cxx_std_20)
# Read by NuvBaseTypes.h, for platforms on which an exported function is declared as such.
target_compile_definitions(
    NuvLinearProgramming
    PRIVATE NUV_BUILDING
    PUBLIC $<$<STREQUAL:$<TARGET_PROPERTY:NuvLinearProgramming,TYPE>,SHARED_LIBRARY>:NUV_SHARED>)
set_target_properties(
    NuvLinearProgramming
    PROPERTIES CXX_EXTENSIONS OFF
               # Each source file stamps out the templates that it uses.
               UNITY_BUILD OFF
               CXX_VISIBILITY_PRESET hidden
               VISIBILITY_INLINES_HIDDEN ON
               POSITION_INDEPENDENT_CODE ON
               # The C compiler links it: whatever would need a C++ runtime fails there.
               LINKER_LANGUAGE C)
nuv_soname(NuvLinearProgramming)
target_compile_definitions(NuvLinearProgramming PRIVATE $<$<BOOL:${NUV_ASSERTIONS}>:NUV_ASSERTIONS>)
nuv_warnings(NuvLinearProgramming)
nuv_exact_floats(NuvLinearProgramming)
nuv_no_cxx_runtime(NuvLinearProgramming)
if(NOT MSVC)
    # Full optimisation of the inner loops, also where a user's own flags for a release stop at -O2.
    foreach(set Plain Baseline Avx2 Avx512)
        list(APPEND nuv_loops Nuv/Utils/Kernels/${set}.cpp Nuv/Utils/Batch/Lanes${set}.cpp)
    endforeach()
    list(APPEND nuv_loops Nuv/Utils/Kernels/DenseAlgebra.cpp Nuv/Utils/Batch/LaneQueue.cpp)
    set_property(
        SOURCE ${nuv_loops} APPEND
        PROPERTY COMPILE_OPTIONS "$<$<CONFIG:Release,RelWithDebInfo>:-O3>")
endif()

# The loops once more for wider vectors, to be chosen at run time; on another compiler or processor
# these sources are compiled as they are and offer nothing.
include(CheckCXXSourceCompiles)
function(nuv_loops_for set flags macro)
    set(CMAKE_REQUIRED_FLAGS "${flags}")
    check_cxx_source_compiles(
        "#if !defined(${macro}) || !(defined(__x86_64__) || defined(__i386__))
        #error
        #endif
        int main() { return __builtin_cpu_supports(\"avx2\"); }"
        NUV_HAS${macro})
    if(NUV_HAS${macro})
        separate_arguments(options UNIX_COMMAND "${flags}")
        set_property(
            SOURCE Nuv/Utils/Kernels/${set}.cpp Nuv/Utils/Batch/Lanes${set}.cpp APPEND
            PROPERTY COMPILE_OPTIONS ${options})
    endif()
endfunction()
nuv_loops_for(Avx2 "-mavx2" __AVX2__)
nuv_loops_for(Avx512 "-mavx512f -mavx512bw -mavx512dq -mavx512vl" __AVX512VL__)
