# Runs the program JOB on a copy of the untouched installation PRISTINE, in the folder SCRATCH, and
# leaves its pictures of the forms in PICTURES and the file TAKEN as the sign that they are whole.
# What the job says is shown only when it fails.
file(REMOVE_RECURSE "${SCRATCH}" "${PICTURES}")
file(REMOVE "${TAKEN}")
file(MAKE_DIRECTORY "${SCRATCH}/home" "${PICTURES}")
file(COPY "${PRISTINE}" DESTINATION "${SCRATCH}")
get_filename_component(folder "${PRISTINE}" NAME)

# A home of its own keeps the person's settings out of the pictures, and the job out of the settings.
# A build with sanitizers looks for leaks when it tests, not here.
execute_process(
  COMMAND "${CMAKE_COMMAND}" -E env --unset=QT_SCALE_FACTOR --unset=QT_STYLE_OVERRIDE
          QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0
          "HOME=${SCRATCH}/home" "XDG_CONFIG_HOME=${SCRATCH}/home" "XDG_DATA_HOME=${SCRATCH}/home"
          "${JOB}" --installation "${SCRATCH}/${folder}" --screenshots "${PICTURES}"
  OUTPUT_VARIABLE said
  ERROR_VARIABLE said
  RESULT_VARIABLE failed
  TIMEOUT 300)
if(failed)
  message(FATAL_ERROR "No pictures of the forms can be taken for the help (${failed}):\n${said}")
endif()
file(REMOVE_RECURSE "${SCRATCH}")
file(TOUCH "${TAKEN}")
