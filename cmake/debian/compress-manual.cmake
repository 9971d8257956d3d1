# SPDX-License-Identifier: MIT
# Run by CPack on what it is about to pack: Debian has its manual pages compressed.
file(GLOB_RECURSE pages ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/zebx*.1)
foreach(page ${pages})
  execute_process(COMMAND gzip -9n ${page} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
