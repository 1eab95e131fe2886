# The core: the library Nuv::LinearProgramming, its headers and its sources, by name.

set(NUV_PUBLIC_HEADERS
    Nuv/Templates/NuvIterator.decl.h
    Nuv/Templates/NuvList.decl.h
    Nuv/Templates/NuvMatrix.decl.h
    Nuv/Templates/NuvMatrixReal.decl.h
    Nuv/Templates/NuvPair.decl.h
    Nuv/Templates/NuvTemplateBegin.h
    Nuv/Templates/NuvTemplateEnd.h
    Nuv/Templates/NuvUnordered.decl.h
    Nuv/Templates/NuvVector.decl.h
    Nuv/Utils/NuvAllocator.h
    Nuv/Utils/NuvAllocatorInline.h
    Nuv/Utils/NuvBaseTypes.h
    Nuv/Utils/NuvLinearProgramming.h
    Nuv/Utils/NuvLinearProgrammingInline.h
    Nuv/Utils/NuvLinearProgrammingMonitor.h
    Nuv/Utils/NuvScratchAllocator.h
    Nuv/Utils/NuvStdCLibInline.h
    Nuv/Utils/NuvString.h
    Nuv/Utils/NuvTypes.h)

set(NUV_CORE_SOURCES
    Nuv/Utils/NuvKernels.cpp
    Nuv/Utils/NuvLinearProgramming.cpp
    Nuv/Utils/NuvLinearProgrammingEditing.cpp
    Nuv/Utils/NuvLinearProgrammingRecords.cpp
    Nuv/Utils/NuvLinearProgrammingSolve.cpp
    Nuv/Utils/NuvLinearProgrammingStandardForm.cpp
    Nuv/Utils/NuvRevisedSimplex.cpp
    Nuv/Utils/NuvScratchAllocator.cpp
    Nuv/Utils/NuvString.cpp)

# Written while the sources are being laid out: what is not there yet is left out, and looked for
# again when a file appears.
foreach(directory Nuv/Utils Nuv/Templates Nuv/Model apps apps/nuvlp)
    if(IS_DIRECTORY ${PROJECT_SOURCE_DIR}/${directory})
        set_property(
            DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${directory})
    endif()
endforeach()
foreach(list NUV_PUBLIC_HEADERS NUV_CORE_SOURCES)
    foreach(file ${${list}})
        if(NOT EXISTS ${PROJECT_SOURCE_DIR}/${file})
            list(REMOVE_ITEM ${list} ${file})
            message(STATUS "not there yet: ${file}")
        endif()
    endforeach()
endforeach()

# What every build of the core's sources has in common; `kind` is STATIC, SHARED or empty, which
# leaves the choice to BUILD_SHARED_LIBS.
function(nuv_add_core target kind)
    if(NOT NUV_CORE_SOURCES)
        add_library(${target} INTERFACE)
        target_include_directories(${target} INTERFACE ${PROJECT_SOURCE_DIR})
        return()
    endif()
    list(TRANSFORM NUV_CORE_SOURCES PREPEND ${PROJECT_SOURCE_DIR}/ OUTPUT_VARIABLE sources)
    list(TRANSFORM NUV_PUBLIC_HEADERS PREPEND ${PROJECT_SOURCE_DIR}/ OUTPUT_VARIABLE headers)
    add_library(${target} ${kind} ${sources})
    target_sources(
        ${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${headers})
    # PRIVATE, because a user's program may be C, or C++ of another year.
    target_compile_features(${target} PRIVATE cxx_std_20)
    set_target_properties(
        ${target}
        PROPERTIES CXX_EXTENSIONS OFF
                   CXX_VISIBILITY_PRESET hidden
                   VISIBILITY_INLINES_HIDDEN ON
                   POSITION_INDEPENDENT_CODE ON
                   # Linked by the C compiler, which shows that no C++ runtime is needed.
                   LINKER_LANGUAGE C)
    nuv_warnings(${target})
    nuv_exact_floats(${target})
    nuv_no_cxx_runtime(${target})
endfunction()

nuv_add_core(NuvLinearProgramming "")
add_library(Nuv::LinearProgramming ALIAS NuvLinearProgramming)
