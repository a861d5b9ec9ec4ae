# What `cmake --install` lays down: libraries, headers, programs, a pkg-config file and a CMake package.
include(CMakePackageConfigHelpers)

set_target_properties(KxIpcSDK ipcctl PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS KxIpcSDK ipcctl EXPORT KxIpcSDKTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/KxIpcSDK DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(KX_BUILD_PROGRAMS)
    file(RELATIVE_PATH library_from_programs /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
    set_target_properties(kxcam PROPERTIES INSTALL_RPATH "$ORIGIN/${library_from_programs}")
    install(TARGETS kxcam kxsim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/KxIpcSDK)
install(EXPORT KxIpcSDKTargets NAMESPACE KxIpcSDK:: DESTINATION ${package_dir})
configure_package_config_file(cmake/KxIpcSDKConfig.cmake.in KxIpcSDKConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(KxIpcSDKConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KxIpcSDKConfig.cmake ${PROJECT_BINARY_DIR}/KxIpcSDKConfigVersion.cmake
        DESTINATION ${package_dir})

# The file finds the tree from where it lies itself, so an installed tree can be moved.
file(RELATIVE_PATH prefix_from_pkgconfig /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/KxIpcSDK.pc.in KxIpcSDK.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/KxIpcSDK.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES LICENSE README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
