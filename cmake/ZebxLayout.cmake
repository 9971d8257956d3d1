# SPDX-License-Identifier: MIT
# The build tree has the shape of an installation: bin/zebx beside lib/zebx/*.arx,
# so that the program finds its modules the same way in both.
set(ZEBX_MODULE_DIR ${CMAKE_INSTALL_LIBDIR}/zebx)
if(CMAKE_INSTALL_LIBDIR MATCHES "/")
  # Debian's multiarch folder: the modules stand in plain lib/, beside bin/.
  set(ZEBX_MODULE_DIR lib/zebx)
endif()
set(ZEBX_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/zebx)
set(ZEBX_PACKAGE_DIR lib/cmake/ZEBXRepositoryClient)
set(ZEBX_BUILD_MODULE_DIR ${PROJECT_BINARY_DIR}/lib/zebx)
set(ZEBX_BUILD_BIN_DIR ${PROJECT_BINARY_DIR}/bin)
