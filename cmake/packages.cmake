# Debian packages: cpack in the build directory, or cpack --preset release, makes the three of them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/directory_permissions.cmake)
set(CPACK_PACKAGE_CONTACT "libkova developers <libkova@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # would come before each package's own
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SOURCE libkova)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library development tools)

# Dependencies on the system are those of the binaries; the libraries of one package that another uses are not packaged yet
# when they are looked for.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR} ${PROJECT_BINARY_DIR}/${KOVA_PRIVATE_LIBDIR})
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_COMPONENT_TOOLS_DEPENDS library)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libkova${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "device side of a TR-069 data model for an LTE router
libkova reads, checks and sets the parameters of an LTE router for a CWMP
agent, and judges all values of a SetParameterValues request together.

This package has the library, and stand-ins for the libraries of the device,
with which it runs on any machine.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkova-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "device side of a TR-069 data model for an LTE router - development files
libkova reads, checks and sets the parameters of an LTE router for a CWMP
agent, and judges all values of a SetParameterValues request together.

This package has what is needed to build an agent with libkova: the headers,
files for CMake and pkg-config, and a small agent as an example.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME kova-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION net)
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS "iputils-ping, traceroute") # what the diagnostics tests run
set(CPACK_DEBIAN_TOOLS_DESCRIPTION "command-line TR-069 agent with a virtual LTE router
kovactl gets and sets the TR-069 parameters of an LTE router as a CWMP agent
does. It works on a virtual device, a directory with the settings, the
services and the diagnostics tests of a router, which logs what it is asked.")

# What other packages depend on when they are linked with the library; its neighbours are its own business.
configure_file(cmake/debian/shlibs.in debian/shlibs @ONLY)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA
  ${PROJECT_BINARY_DIR}/debian/shlibs ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/ldconfig_by_trigger.cmake)

# Files that only packages have.
kova_compressed(changelog ${PROJECT_SOURCE_DIR}/cmake/debian/changelog)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  install(FILES ${changelog} cmake/debian/copyright COMPONENT ${component} EXCLUDE_FROM_ALL
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
endforeach()
install(FILES examples/agent.c examples/CMakeLists.txt COMPONENT development EXCLUDE_FROM_ALL
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME}/examples)

include(CPack)
