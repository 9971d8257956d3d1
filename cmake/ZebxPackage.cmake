# SPDX-License-Identifier: MIT
# Debian packages by CPack: "zebx", to run; "zebx-dialog", its windows; and "zebx-dev", to build
# modules of one's own against it. scripts/package builds them as they are meant to be given away.
#
# The modules lie in /usr/lib/zebx, a private folder, and find each other through $ORIGIN;
# the program finds them through $ORIGIN/../lib/zebx.
set(_debian ${PROJECT_SOURCE_DIR}/cmake/debian)

file(STRINGS ${_debian}/changelog newest LIMIT_COUNT 1)
if(NOT newest MATCHES "^zebx \\(${PROJECT_VERSION}\\) ")
  message(FATAL_ERROR
    "cmake/debian/changelog begins with '${newest}': add an entry for ${PROJECT_VERSION}.")
endif()
find_program(ZEBX_GZIP gzip REQUIRED)
set(_changelog ${PROJECT_BINARY_DIR}/debian/changelog.gz)
add_custom_command(OUTPUT ${_changelog}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/debian
  COMMAND sh -c "\"$0\" -9nc \"$1\" >\"$2\"" ${ZEBX_GZIP} ${_debian}/changelog ${_changelog}
  DEPENDS ${_debian}/changelog
  VERBATIM)
add_custom_target(zebxchangelog ALL DEPENDS ${_changelog})

install(FILES ${_debian}/copyright ${_changelog}
  DESTINATION share/doc/zebx COMPONENT runtime)
install(FILES ${_debian}/zebx.lintian-overrides
  DESTINATION share/lintian/overrides RENAME zebx COMPONENT runtime)
install(FILES ${_debian}/copyright ${_changelog}
  DESTINATION share/doc/zebx-dialog COMPONENT dialog)
install(FILES ${_debian}/zebx-dialog.lintian-overrides
  DESTINATION share/lintian/overrides RENAME zebx-dialog COMPONENT dialog)
install(DIRECTORY examples/installation
  DESTINATION share/doc/zebx/examples COMPONENT runtime)
install(FILES ${_debian}/copyright ${_changelog}
  DESTINATION share/doc/zebx-dev COMPONENT development)
install(DIRECTORY examples/plugin-memory
  DESTINATION share/doc/zebx-dev/examples COMPONENT development)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${_debian}/compress-manual.cmake)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL runtime dialog development)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SOURCE zebx)
set(CPACK_DEBIAN_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER
  "ZEBXRepositoryClient maintainers <maintainers@users.noreply.c-seed-af89b71a.example>")

set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "keep drawings and settings of network workstations the same")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME zebx)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${ZEBX_BUILD_MODULE_DIR})
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
"Workstations of water, sewer and gas networks work with local definition
data: drawings of nodes, labels and symbols, configuration files, general
settings. zebx sends them to one repository, a SQLite file, and loads them
on every other workstation, byte for byte, all or a selection.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS zebx-dialog)
set(CPACK_DEBIAN_DIALOG_PACKAGE_NAME zebx-dialog)
set(CPACK_DEBIAN_DIALOG_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_DIALOG_PACKAGE_DEPENDS "zebx (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DIALOG_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_DIALOG_PACKAGE_RECOMMENDS "qt6-translations-l10n")
set(CPACK_DEBIAN_DIALOG_DESCRIPTION
"The configuration dialog of zebx with its connection and log windows, in
which everything or a selection is loaded from the shared repository and an
administrator sends to it: zebx dialog. A machine without a screen runs zebx
without this package.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME zebx-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "zebx (= ${PROJECT_VERSION}), libboost-dev (>= 1.74)")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
"Headers and the CMake package ZEBXRepositoryClient, to build modules and
storage plug-ins of one's own for zebx, with a sample storage plug-in.")
include(CPack)
