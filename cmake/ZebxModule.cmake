# SPDX-License-Identifier: MIT
# zebx_add_module(NAME [VERSION a.b.c.d] SOURCES file...): a module of the family.
#
# Makes the shared object NAME.arx with hidden visibility, a run path of $ORIGIN
# (modules of one installation lie in one folder) and the version record that
# CRepositoryStorageManager reads without loading the file. Used by this project
# and, through the installed CMake package, by modules outside it.

set(_ZEBX_MODULE_DIR ${CMAKE_CURRENT_LIST_DIR})

function(zebx_add_module name)
  cmake_parse_arguments(arg "" "VERSION" "SOURCES" ${ARGN})
  if(NOT arg_VERSION)
    set(arg_VERSION ${PROJECT_VERSION})
  endif()
  string(REPLACE "." ";" numbers "${arg_VERSION}.0.0.0.0")
  list(SUBLIST numbers 0 4 numbers)
  list(JOIN numbers ", " ZEBX_VERSION_PARTS)
  set(record ${CMAKE_CURRENT_BINARY_DIR}/${name}VersionRecord.cpp)
  configure_file(${_ZEBX_MODULE_DIR}/VersionRecord.cpp.in ${record} @ONLY)

  add_library(${name} SHARED ${arg_SOURCES} ${record})
  set_target_properties(${name} PROPERTIES
    PREFIX ""
    SUFFIX ".arx"
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    BUILD_WITH_INSTALL_RPATH ON
    INSTALL_RPATH "$ORIGIN")
  if(ZEBX_BUILD_MODULE_DIR)
    set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${ZEBX_BUILD_MODULE_DIR})
  endif()
endfunction()
