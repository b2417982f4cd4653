# Installation: libraries, headers, the CMake package and the pkg-config file.

include(CMakePackageConfigHelpers)

install(TARGETS zimcore zimcc EXPORT zimcc-targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(level IN LISTS ZIMCC_TARGETS)
  if(TARGET zimcc_${level})
    # Found by the loader in place of the baseline on a processor that has this level; nothing links to it by name.
    install(TARGETS zimcc_${level}
      LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/glibc-hwcaps/x86-64-${level} NAMELINK_SKIP)
  endif()
endforeach()
install(FILES include/zimcc.h include/zimcore.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/zimcc)
install(EXPORT zimcc-targets NAMESPACE zimcc:: DESTINATION ${package_folder})
configure_package_config_file(cmake/zimcc-config.cmake.in ${PROJECT_BINARY_DIR}/zimcc-config.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zimcc-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zimcc-config.cmake ${PROJECT_BINARY_DIR}/zimcc-config-version.cmake
  DESTINATION ${package_folder})

# Relative to its own folder, so that the installed tree can be moved and cmake --install --prefix is followed.
set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH path_to_prefix ${CMAKE_INSTALL_PREFIX}/${pkgconfig_folder} ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/zimcc.pc.in ${PROJECT_BINARY_DIR}/zimcc.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zimcc.pc DESTINATION ${pkgconfig_folder})
