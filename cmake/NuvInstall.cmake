# What `cmake --install` puts down for users of the library: headers, the library, a CMake package and
# a pkg-config file. Everything finds its neighbours relative to itself, so the tree may be moved.
include(CMakePackageConfigHelpers)

set(nuv_package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/Nuv)
install(
    TARGETS NuvLinearProgramming
    EXPORT NuvTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
function(nuv_install_headers)
    foreach(header IN LISTS ARGV)
        get_filename_component(folder ${header} DIRECTORY)
        install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder})
    endforeach()
endfunction()
nuv_install_headers(${NUV_PUBLIC_HEADERS})
install(FILES LICENSE CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(EXPORT NuvTargets NAMESPACE Nuv:: DESTINATION ${nuv_package_directory})

# What a C linker has to be told where it links a static library of C++.
if(APPLE OR CMAKE_CXX_FLAGS MATCHES "-stdlib=libc\\+\\+")
    set(nuv_cxx_runtime c++)
else()
    set(nuv_cxx_runtime stdc++)
endif()
configure_package_config_file(
    cmake/NuvConfig.cmake.in ${PROJECT_BINARY_DIR}/NuvConfig.cmake
    INSTALL_DESTINATION ${nuv_package_directory}
    NO_SET_AND_CHECK_MACRO)
# Before 1.0 a minor version may change the interface.
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/NuvConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/NuvConfig.cmake ${PROJECT_BINARY_DIR}/NuvConfigVersion.cmake
        DESTINATION ${nuv_package_directory})

# pkg-config knows the directory of the file that it reads; the prefix is so many levels above.
set(nuv_pkgconfig_directory ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
    set(nuv_pkgconfig_prefix ${CMAKE_INSTALL_PREFIX})
    set(nuv_pkgconfig_libdir ${CMAKE_INSTALL_LIBDIR})
else()
    file(RELATIVE_PATH nuv_pkgconfig_up /${nuv_pkgconfig_directory} /)
    string(REGEX REPLACE "/$" "" nuv_pkgconfig_up "${nuv_pkgconfig_up}")
    set(nuv_pkgconfig_prefix "\${pcfiledir}/${nuv_pkgconfig_up}")
    set(nuv_pkgconfig_libdir "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
endif()
if(IS_ABSOLUTE ${CMAKE_INSTALL_INCLUDEDIR})
    set(nuv_pkgconfig_includedir ${CMAKE_INSTALL_INCLUDEDIR})
else()
    set(nuv_pkgconfig_includedir "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
function(nuv_install_pkgconfig name)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${nuv_pkgconfig_directory})
endfunction()
nuv_install_pkgconfig(nuv-linear-programming)
