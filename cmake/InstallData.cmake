# Runs at installing: adds what is missing of the databases and pictures, and never touches what is
# there. KESTRIX_PRISTINE is the untouched layout that the build made.
set(application "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/KestrixStudy")

# Files appear whole or not at all: each is copied beside its place and renamed into it, and the
# renaming itself refuses a place that somebody else took in the meantime.
function(add_if_missing name)
  set(target "${application}/${name}")
  # A link counts even when it leads nowhere just now: its share may only be unplugged.
  if(EXISTS "${target}" OR IS_SYMLINK "${target}")
    message(STATUS "Kept: ${target}")
    return()
  endif()
  string(RANDOM LENGTH 8 suffix)
  set(part "${target}.${suffix}.part")
  file(COPY_FILE "${KESTRIX_PRISTINE}/${name}" "${part}" RESULT failed)
  if(failed)
    file(REMOVE "${part}")
    message(FATAL_ERROR "${target} can't be installed: ${failed}")
  endif()
  file(RENAME "${part}" "${target}" NO_REPLACE RESULT failed)
  if(failed AND NOT failed STREQUAL "NO_REPLACE" AND NOT EXISTS "${target}")
    # Some file systems can't refuse in one step; nothing stands there, so a plain renaming does.
    file(RENAME "${part}" "${target}" RESULT failed)
  endif()
  file(REMOVE "${part}")
  if(failed STREQUAL "NO_REPLACE")
    message(STATUS "Kept: ${target}")
  elseif(failed)
    message(FATAL_ERROR "${target} can't be installed: ${failed}")
  else()
    message(STATUS "Installing: ${target}")
  endif()
endfunction()

file(MAKE_DIRECTORY "${application}/RskAsmtFld/Picfolder")
add_if_missing(risk_esmatn.mdb)
add_if_missing(RskAsmtFld/orgtn.mdb)
add_if_missing(RskAsmtFld/RskAsmt_BkSup.mdb)
add_if_missing(RskAsmtFld/NoPicSlted.jpg)
add_if_missing(RskAsmtFld/errImgLoad.jpg)

# An entry for the desktop's menu, ready to be linked into the user's applications folder. It names
# the place that the installation will have, so DESTDIR doesn't stand in it.
# A relative prefix is one of the folder that the installation runs in.
get_filename_component(place "${CMAKE_INSTALL_PREFIX}/KestrixStudy" ABSOLUTE)

# What a value of an entry can't hold as it stands.
function(escape_value variable)
  string(REPLACE "\\" "\\\\" ${variable} "${${variable}}")
  string(REPLACE "\n" "\\n" ${variable} "${${variable}}")
  string(REPLACE "\t" "\\t" ${variable} "${${variable}}")
  string(REPLACE "\r" "\\r" ${variable} "${${variable}}")
  set(${variable} "${${variable}}" PARENT_SCOPE)
endfunction()

# A word of a command is quoted as for a shell, and "%" stands for a file to open.
string(REGEX REPLACE "([\"`$\\\\])" "\\\\\\1" program "${place}/KestrixStudy")
string(REPLACE "%" "%%" program "${program}")
set(command "\"${program}\"")
if(program MATCHES "=")
  # Some desktops take a first word with "=" for a variable of the environment.
  set(command "sh -c \"exec \\\"\\$0\\\"\" ${command}")
endif()
escape_value(command)
set(icon "${place}/kestrix.png")
escape_value(icon)
file(WRITE "${application}/KestrixStudy.desktop"
"[Desktop Entry]
Type=Application
Name=KestrixStudy
Comment=Risk assessment of machinery
Exec=${command}
Icon=${icon}
Categories=Office;Engineering;
Terminal=false
")
