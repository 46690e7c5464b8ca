# Makes the database TARGET from the SQL text SOURCE with the program SQLITE3. The file appears under
# its name only when it is whole.
get_filename_component(folder "${TARGET}" DIRECTORY)
file(MAKE_DIRECTORY "${folder}")
set(part "${TARGET}.part")
file(REMOVE "${part}" "${part}-journal")

execute_process(
  COMMAND "${SQLITE3}" -batch -bail "${part}"
  INPUT_FILE "${SOURCE}"
  OUTPUT_QUIET
  RESULT_VARIABLE failed
  ERROR_VARIABLE reason)
if(failed)
  message(FATAL_ERROR "${SOURCE} can't be made into a database: ${reason}")
endif()

execute_process(
  COMMAND "${SQLITE3}" -batch "${part}" "PRAGMA integrity_check"
  OUTPUT_VARIABLE verdict
  OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT verdict STREQUAL "ok")
  message(FATAL_ERROR "The database made from ${SOURCE} is damaged: ${verdict}")
endif()

file(RENAME "${part}" "${TARGET}")
