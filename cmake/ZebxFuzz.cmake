# SPDX-License-Identifier: MIT
# ZEBX_FUZZ: everything is compiled for libFuzzer and the sanitizers, which clang alone has.
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  message(FATAL_ERROR "ZEBX_FUZZ needs clang: scripts/fuzz configures it.")
endif()
set(_ZEBX_SANITIZERS -fsanitize=address,undefined)
add_compile_options(-fsanitize=fuzzer-no-link ${_ZEBX_SANITIZERS}
  -fno-sanitize-recover=all -fno-omit-frame-pointer)
add_link_options(${_ZEBX_SANITIZERS})
