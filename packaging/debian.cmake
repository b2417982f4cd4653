# Debian packages by CPack, one for each component of the installation: cpack --preset package.

find_program(GZIP gzip REQUIRED)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR zimcc)
set(CPACK_PACKAGE_CONTACT "zimcc developers <developers@zimcc.invalid>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_COMPONENTS_ALL runtime development tools python)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
# Dependencies on other packages by what the files need; on one another in step.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(in_step "libzimcc7 (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

set(about "zimcc converts the colours of two-dimensional images: between colour models,
between chroma layouts and samplings of video, through curves and matrices, to
fewer bits, and from the mosaics of raw sensors. Its results are exact to the
last bit, and its kernels run on vector registers.")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libzimcc7)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "colour conversion of images, shared libraries\n${about}

This package has the libraries, in builds for several levels of processors,
of which the dynamic loader takes the best.")
# CPack writes what calls ldconfig; which packages need the library, dpkg-shlibdeps tells by shlibs.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  ${CMAKE_CURRENT_LIST_DIR}/runtime/shlibs ${CMAKE_CURRENT_LIST_DIR}/runtime/triggers)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzimcc-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ${in_step})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "colour conversion of images, development files\n${about}

This package has the headers, what CMake and pkg-config need, and examples.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME zimcc-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS ${in_step})
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "colour conversion of images, command-line tool\n${about}

This package has zimcc, which lists, explains, runs and times any conversion
on picture files.")

set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-zimcc)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "libzimcc7 (>= ${PROJECT_VERSION}), python3:any, python3-numpy")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
  ${CMAKE_CURRENT_LIST_DIR}/python/postinst ${CMAKE_CURRENT_LIST_DIR}/python/prerm)
set(CPACK_COMPONENT_PYTHON_DESCRIPTION "colour conversion of images, Python package\n${about}

This package converts NumPy arrays by any function of the library.")

# What Debian expects of every package: its copyright, its changelog.
set(changelog ${PROJECT_BINARY_DIR}/changelog.Debian.gz)
execute_process(COMMAND ${GZIP} -9nc ${CMAKE_CURRENT_LIST_DIR}/changelog OUTPUT_FILE ${changelog} COMMAND_ERROR_IS_FATAL ANY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/changelog)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/copyright ${changelog}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME} COMPONENT ${component})
endforeach()

# And of manual pages: that they are compressed.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/compress_manuals.cmake)

include(CPack)
