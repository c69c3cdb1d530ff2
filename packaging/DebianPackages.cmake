# The Debian packages: one for users of the programs, one for builders of other programs. "cpack" in the build
# folder makes them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PACKAGE_CONTACT "ZO Bridgework maintainers <maintainers@orvanelabs.com>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
# Installed as "cmake --install" does it with this prefix.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
  WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME zobridgework)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "explorer of REST services with plug-ins for form editors
Browse the operations of REST services, fill in a request as a tree of
typed values by keyboard, execute it, and read the answer in the same kind
of tree. OpenAPI and Swagger documents become services.
.
This package has the explorer (zoexplorer), its command line (zoapi), the
plug-in of Qt Designer and Qt Creator, and the shared libraries.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${ZO_LIBRARY_DIR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "fonts-open-sans, fonts-liberation, xdg-utils")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS "designer-qt6, qtcreator, zobridgework-dev")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/triggers)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME zobridgework-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "explorer of REST services (development files)
Headers and the CMake package ZOBridgework, for programs that call REST
services through the explorer's runtime, hold them as components on their
forms, or bring service classes of their own into the explorer.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "zobridgework (= ${PROJECT_VERSION}), qt6-base-dev (>= 6.4)")

foreach(component runtime development)
  string(TOUPPER ${component} upper)
  set(folder ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  install(FILES copyright ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz DESTINATION ${folder} COMPONENT ${component})
endforeach()

install(DIRECTORY ${CMAKE_SOURCE_DIR}/examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/zobridgework-dev
  COMPONENT development)

include(CPack)
