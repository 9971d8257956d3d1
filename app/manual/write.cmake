# SPDX-License-Identifier: MIT
# cmake -DTOOL=... -DARGUMENTS=... -DOUTPUT=... -P write.cmake: the tool's output as a file,
# which stays as it was when the tool fails.
execute_process(COMMAND ${TOOL} ${ARGUMENTS} OUTPUT_FILE ${OUTPUT}.new RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${TOOL} ${ARGUMENTS}: ${result}")
endif()
file(RENAME ${OUTPUT}.new ${OUTPUT})
