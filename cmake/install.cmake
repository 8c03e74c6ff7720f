# An install tree that can be moved: library, headers, CMake package, pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS korvos EXPORT korvos-targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(EXPORT korvos-targets NAMESPACE korvos:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/korvos)

configure_package_config_file(cmake/korvos-config.cmake.in korvos-config.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/korvos)
write_basic_package_version_file(korvos-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/korvos-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/korvos-config-version.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/korvos)

# The prefix is found from where the file lies.
file(RELATIVE_PATH pc_to_prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/korvos.pc.in korvos.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/korvos.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
