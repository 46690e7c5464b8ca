# Makes the database TARGET from the SQL texts SOURCES with the program SQLITE3. The file appears under
# its name only when it is whole.
get_filename_component(folder "${TARGET}" DIRECTORY)
file(MAKE_DIRECTORY "${folder}")
set(part "${TARGET}.part")
file(REMOVE "${part}" "${part}-journal")

foreach(source IN LISTS SOURCES)
  execute_process(
    COMMAND "${SQLITE3}" -batch -bail "${part}"
    INPUT_FILE "${source}"
    OUTPUT_QUIET
    RESULT_VARIABLE failed
    ERROR_VARIABLE reason)
  if(failed)
    message(FATAL_ERROR "${source} can't be made into a database: ${reason}")
  endif()
endforeach()

execute_process(
  COMMAND "${SQLITE3}" -batch "${part}" "PRAGMA integrity_check"
  OUTPUT_VARIABLE verdict
  OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT verdict STREQUAL "ok")
  message(FATAL_ERROR "The database made from ${SOURCES} is damaged: ${verdict}")
endif()

file(RENAME "${part}" "${TARGET}")
