# SPDX-License-Identifier: MIT
# bin/zebx, lib/zebx/*.arx, the headers of every floor and the CMake package.  The components
# become Debian packages, see ZebxPackage.cmake.
include(CMakePackageConfigHelpers)

install(TARGETS zebx RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
install(TARGETS ZEBXRepositoryClientPlugin_Sql
  LIBRARY DESTINATION ${ZEBX_MODULE_DIR} COMPONENT runtime)
install(TARGETS zebxplatform ZEBXGisCore ZEBXLogging ZEBXWorkspaceCore ZEBXNetworkCore
  ZEBXRepositoryClient
  EXPORT ZEBXRepositoryClientTargets
  LIBRARY DESTINATION ${ZEBX_MODULE_DIR} COMPONENT runtime)
# What shows windows, and so needs Qt: loaded when it is first shown, and a package of its own.
# No module of somebody else's links it, so it is not exported and its headers stay here.
install(TARGETS zebxwindow ZEBXWorkspaceWindow ZEBXRepositoryConnectionWindow
  ZEBXRepositoryClientDialog
  LIBRARY DESTINATION ${ZEBX_MODULE_DIR} COMPONENT dialog)

install(DIRECTORY docs/schemas DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/zebx COMPONENT runtime)

install(DIRECTORY platform/ DESTINATION ${ZEBX_INCLUDE_DIR}/platform COMPONENT development
  FILES_MATCHING PATTERN "*.h" PATTERN "window" EXCLUDE PATTERN "System*.h" EXCLUDE
  PATTERN "FolderNames.h" EXCLUDE)
install(DIRECTORY
  family/GisCore/include/ family/Logging/include/ family/NetworkCore/include/
  family/WorkspaceCore/include/
  client/include/ storage/include/
  DESTINATION ${ZEBX_INCLUDE_DIR} COMPONENT development FILES_MATCHING PATTERN "*.h")

install(EXPORT ZEBXRepositoryClientTargets NAMESPACE ZEBX::
  DESTINATION ${ZEBX_PACKAGE_DIR} COMPONENT development)
configure_package_config_file(cmake/ZEBXRepositoryClientConfig.cmake.in
  ${PROJECT_BINARY_DIR}/ZEBXRepositoryClientConfig.cmake
  INSTALL_DESTINATION ${ZEBX_PACKAGE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZEBXRepositoryClientConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/ZEBXRepositoryClientConfig.cmake
  ${PROJECT_BINARY_DIR}/ZEBXRepositoryClientConfigVersion.cmake
  cmake/ZebxModule.cmake cmake/VersionRecord.cpp.in
  DESTINATION ${ZEBX_PACKAGE_DIR} COMPONENT development)
