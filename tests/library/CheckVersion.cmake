# cmake -DVERSION=... -DSOURCE_DIR=... -DREADELF=... -DLIBRARY=... -P CheckVersion.cmake
#
# The project, the header that is included, the change logs, the library's soname and the packages that are
# named after it say the same version.
cmake_minimum_required(VERSION 3.22)

if(NOT VERSION MATCHES "^([0-9]+)\\.([0-9]+)\\.([0-9]+)$")
    message(FATAL_ERROR "the project's version is '${VERSION}'")
endif()
set(major ${CMAKE_MATCH_1})
set(minor ${CMAKE_MATCH_2})
set(patch ${CMAKE_MATCH_3})

file(STRINGS ${SOURCE_DIR}/Nuv/Utils/NuvVersion.h defined REGEX "^#define NUV_VERSION")
set(expected
    "#define NUV_VERSION_MAJOR ${major};#define NUV_VERSION_MINOR ${minor};#define NUV_VERSION_PATCH ${patch};#define NUV_VERSION \"${VERSION}\""
)
if(NOT defined STREQUAL expected)
    message(SEND_ERROR "NuvVersion.h says\n  ${defined}\ninstead of\n  ${expected}")
endif()

# What is to be released stands first, what was released last after it.
file(STRINGS ${SOURCE_DIR}/CHANGELOG.md releases REGEX "^## ")
if(NOT releases MATCHES "(^|;)## \\[?${major}\\.${minor}\\.${patch}([^0-9]|$)")
    message(SEND_ERROR "CHANGELOG.md tells nothing of ${VERSION}: ${releases}")
endif()

# A program asks for the soname at run time: while the major version is 0, the minor one is part of it.
set(interface ${major})
if(major EQUAL 0)
    set(interface ${major}.${minor})
endif()
execute_process(
    COMMAND ${READELF} --dynamic ${LIBRARY} OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
if(NOT dynamic MATCHES "\\(SONAME\\)[^\n]*\\[([^]]*)\\]" OR NOT CMAKE_MATCH_1 MATCHES "\\.so\\.(.*)$"
   OR NOT CMAKE_MATCH_1 STREQUAL interface)
    message(SEND_ERROR "the soname ends in '${CMAKE_MATCH_1}' instead of '${interface}'")
endif()

file(STRINGS ${SOURCE_DIR}/debian/changelog packaged LIMIT_COUNT 1)
if(NOT packaged MATCHES "^nuv \\(${major}\\.${minor}\\.${patch}\\)")
    message(SEND_ERROR "debian/changelog tells of '${packaged}' instead of ${VERSION}")
endif()
file(STRINGS ${SOURCE_DIR}/debian/control packages REGEX "^Package: lib.*[0-9]$")
if(NOT packages STREQUAL "Package: libnuvlinearprogramming${interface};Package: libnuvmodel${interface}")
    message(SEND_ERROR "debian/control names '${packages}', the soname ends in '${interface}'")
endif()
