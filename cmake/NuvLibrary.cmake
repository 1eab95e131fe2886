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
    Nuv/Utils/NuvLinearProgramming.hpp
    Nuv/Utils/NuvLinearProgrammingContainers.h
    Nuv/Utils/NuvLinearProgrammingInline.h
    Nuv/Utils/NuvLinearProgrammingMonitor.h
    Nuv/Utils/NuvLinearProgrammingRecords.h
    Nuv/Utils/NuvScratchAllocator.h
    Nuv/Utils/NuvStdCLibInline.h
    Nuv/Utils/NuvString.h
    Nuv/Utils/NuvTypes.h)

set(NUV_CORE_SOURCES
    Nuv/Utils/NuvKernels.cpp
    Nuv/Utils/NuvLinearProgramming.cpp
    Nuv/Utils/NuvLinearProgrammingContainers.cpp
    Nuv/Utils/NuvLinearProgrammingEditing.cpp
    Nuv/Utils/NuvLinearProgrammingRecords.cpp
    Nuv/Utils/NuvLinearProgrammingSolve.cpp
    Nuv/Utils/NuvLinearProgrammingStandardForm.cpp
    Nuv/Utils/NuvRevisedSimplex.cpp
    Nuv/Utils/NuvScratchAllocator.cpp
    Nuv/Utils/NuvSimplexIteration.cpp
    Nuv/Utils/NuvString.cpp)

# Static, or shared with BUILD_SHARED_LIBS.
add_library(NuvLinearProgramming ${NUV_CORE_SOURCES})
add_library(Nuv::LinearProgramming ALIAS NuvLinearProgramming)
set_target_properties(NuvLinearProgramming PROPERTIES EXPORT_NAME LinearProgramming)
target_sources(
    NuvLinearProgramming
    PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${NUV_PUBLIC_HEADERS})
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
               CXX_VISIBILITY_PRESET hidden
               VISIBILITY_INLINES_HIDDEN ON
               POSITION_INDEPENDENT_CODE ON
               VERSION ${PROJECT_VERSION}
               SOVERSION ${PROJECT_VERSION_MAJOR}
               # The C compiler links it: whatever would need a C++ runtime fails there.
               LINKER_LANGUAGE C)
nuv_warnings(NuvLinearProgramming)
nuv_exact_floats(NuvLinearProgramming)
nuv_no_cxx_runtime(NuvLinearProgramming)
if(NOT MSVC)
    # The vectoriser, also where a user's own flags for a release stop at -O2.
    set_source_files_properties(
        Nuv/Utils/NuvKernels.cpp PROPERTIES COMPILE_OPTIONS "$<$<CONFIG:Release,RelWithDebInfo>:-O3>")
endif()
