# SPDX-License-Identifier: MIT
# zebx_add_test(NAME SOURCES file... LIBRARIES target... [MODULES target...] [SERVER]): a GoogleTest
# program whose tests CTest runs one by one.
#
# With SERVER it can use tests/support/TestServer.h, and CTest starts the server that it finds there
# before the first such test.
#
# Every test runs with user folders of its own below the build tree, so that none touches
# the settings of whoever builds; MODULES are built first because the test loads them.
#
# zebx_add_window_test(the same): its windows are real ones, on Qt's offscreen platform; it may
# use Qt itself.
set(ZEBX_TEST_HOME ${PROJECT_BINARY_DIR}/test-home)
set(ZEBX_TEST_SERVER ${PROJECT_BINARY_DIR}/test-server/where)
set(ZEBX_WINDOW_ENVIRONMENT
  QT_QPA_PLATFORM=offscreen
  XDG_RUNTIME_DIR=${ZEBX_TEST_HOME}/runtime
  LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/leaks-of-others:print_suppressions=0)

# Most of what a test costs to compile is GoogleTest: its headers are read once for all tests, and
# tests are not optimised.
set(ZEBX_TEST_COMPILE_OPTIONS -O0 -g1)
file(WRITE ${PROJECT_BINARY_DIR}/test-headers/Empty.cpp "")
add_library(zebx_test_headers OBJECT ${PROJECT_BINARY_DIR}/test-headers/Empty.cpp)
target_compile_options(zebx_test_headers PRIVATE ${ZEBX_TEST_COMPILE_OPTIONS} -fPIE)
target_link_libraries(zebx_test_headers PRIVATE GTest::gmock)
set_target_properties(zebx_test_headers PROPERTIES POSITION_INDEPENDENT_CODE OFF)
target_precompile_headers(zebx_test_headers PRIVATE
  <gmock/gmock.h> <gtest/gtest.h>
  <algorithm> <chrono> <filesystem> <fstream> <functional> <map> <memory> <optional> <set>
  <sstream> <stdexcept> <string> <thread> <vector>)

function(zebx_add_test name)
  cmake_parse_arguments(arg "SERVER" "" "SOURCES;LIBRARIES;MODULES;ENVIRONMENT" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} GTest::gmock GTest::gtest_main)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_options(${name} PRIVATE ${ZEBX_TEST_COMPILE_OPTIONS})
  target_precompile_headers(${name} REUSE_FROM zebx_test_headers)
  target_compile_definitions(${name} PRIVATE
    ZEBX_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data"
    ZEBX_SHARED_DATA="${PROJECT_SOURCE_DIR}/../shared/data"
    ZEBX_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    ZEBX_BUILD_DIR="${PROJECT_BINARY_DIR}")
  if(arg_MODULES)
    add_dependencies(${name} ${arg_MODULES})
  endif()
  set(properties TIMEOUT 300)
  if(arg_SERVER)
    target_link_libraries(${name} PRIVATE zebxtestserver)
    add_dependencies(${name} server_fixture)
    list(APPEND properties FIXTURES_REQUIRED zebx_server)
  endif()
  gtest_discover_tests(${name}
    DISCOVERY_TIMEOUT 60
    TEST_PREFIX "${name}."
    TEST_LIST ${name}_LIST
    PROPERTIES ${properties})
  # Read by ctest after the list of tests: a list of variables does not survive the way
  # through the properties above.
  set(environment
    XDG_CONFIG_HOME=${ZEBX_TEST_HOME}/config
    XDG_DATA_HOME=${ZEBX_TEST_HOME}/data
    XDG_STATE_HOME=${ZEBX_TEST_HOME}/state
    XDG_CACHE_HOME=${ZEBX_TEST_HOME}/cache
    ZEBX_INSTALL=${ZEBX_BUILD_MODULE_DIR}
    ZEBX_LANGUAGE=en
    ZEBX_TEST_SERVER=${ZEBX_TEST_SERVER}
    ${arg_ENVIRONMENT})
  set(file ${CMAKE_CURRENT_BINARY_DIR}/${name}_environment.cmake)
  file(WRITE ${file}
    "set_tests_properties(\${${name}_LIST} PROPERTIES ENVIRONMENT \"${environment}\")\n")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${file})
endfunction()

function(zebx_add_window_test name)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets Test)
  file(MAKE_DIRECTORY ${ZEBX_TEST_HOME}/runtime)
  file(CHMOD ${ZEBX_TEST_HOME}/runtime PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
  zebx_add_test(${name} ${ARGN} ENVIRONMENT ${ZEBX_WINDOW_ENVIRONMENT})
  target_link_libraries(${name} PRIVATE zebxwindow Qt6::Widgets Qt6::Test)
  # Qt wants code that the headers were not read for.
  set_target_properties(${name} PROPERTIES DISABLE_PRECOMPILE_HEADERS ON)
endfunction()
