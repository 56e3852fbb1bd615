# cmake -D PROGRAM=... -D ARGUMENTS=... -D EXPECTED=... -D PRINTED=... -P compare.cmake
execute_process(COMMAND ${PROGRAM} ${ARGUMENTS} RESULT_VARIABLE status OUTPUT_FILE ${PRINTED} ERROR_VARIABLE errors)
if(NOT status EQUAL 0 OR NOT errors STREQUAL "")
  message(FATAL_ERROR "${PROGRAM}: ${status}\n${errors}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${EXPECTED} ${PRINTED} RESULT_VARIABLE differs)
if(differs)
  execute_process(COMMAND diff -u ${EXPECTED} ${PRINTED} OUTPUT_VARIABLE difference)
  message("${difference}")  # not in the error, which would wrap its lines
  message(FATAL_ERROR "What ${PROGRAM} prints isn't what ${EXPECTED} says.")
endif()
