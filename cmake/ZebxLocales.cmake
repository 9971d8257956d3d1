# SPDX-License-Identifier: MIT
# zebx_add_locale_runs(TARGET): runs a test program once more as a whole under a Croatian
# and under a German locale, whose decimal sign, letters and encoding differ from "C".
#
# The locales are made in the build tree, so the system need not have them installed. The
# program gets a main of its own that fails when the locale did not become active.

set(ZEBX_LOCALES hr_HR.UTF-8 de_DE.ISO-8859-1)
set(ZEBX_LOCALE_DIR ${PROJECT_BINARY_DIR}/locales)
set(_ZEBX_LOCALE_MAIN ${PROJECT_SOURCE_DIR}/tests/support/LocaleMain.cpp)

find_program(ZEBX_LOCALEDEF localedef REQUIRED)
if(NOT EXISTS /usr/share/i18n/locales/hr_HR)
  message(FATAL_ERROR "The sources of the locales are missing: install Debian's package locales.")
endif()

foreach(locale ${ZEBX_LOCALES})
  string(REPLACE "." ";" pieces ${locale})
  list(GET pieces 0 language)
  list(GET pieces 1 encoding)
  set(stamp ${ZEBX_LOCALE_DIR}/${locale}.stamp)
  add_custom_command(OUTPUT ${stamp}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${ZEBX_LOCALE_DIR}
    COMMAND ${ZEBX_LOCALEDEF} --no-archive -i ${language} -f ${encoding} ${ZEBX_LOCALE_DIR}/${locale}
    COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
    COMMENT "Making the locale ${locale}"
    VERBATIM)
  list(APPEND stamps ${stamp})
endforeach()
add_custom_target(zebx_locales DEPENDS ${stamps})

function(zebx_add_locale_runs target)
  target_sources(${target} PRIVATE ${_ZEBX_LOCALE_MAIN})
  add_dependencies(${target} zebx_locales)
  foreach(locale ${ZEBX_LOCALES})
    add_test(NAME ${target}.${locale} COMMAND ${target})
    set_tests_properties(${target}.${locale} PROPERTIES TIMEOUT 300 ENVIRONMENT
      "LOCPATH=${ZEBX_LOCALE_DIR};LC_ALL=${locale};ZEBX_TEST_LOCALE=${locale}")
  endforeach()
endfunction()
