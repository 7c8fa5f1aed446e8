# Compiles SOURCE to CATALOG with MSGFMT. msgfmt only counts what is fuzzy or not translated; here
# it is an error.
execute_process(
  COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C ${MSGFMT} --check --statistics -o ${CATALOG} ${SOURCE}
  RESULT_VARIABLE result
  ERROR_VARIABLE report)
if(NOT result EQUAL 0 OR report MATCHES "fuzzy|untranslated")
  file(REMOVE ${CATALOG})
  message(FATAL_ERROR "${SOURCE}: every phrase must be translated: ${report}")
endif()
