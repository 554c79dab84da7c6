# Copies the shipped files of SOURCE, and the page HELP, into the program directory STAGE. A file the pilot has changed there
# is left as it is: MANIFEST remembers the hash of each file as it was staged, and only a file that still has it is replaced by
# a newer one.

cmake_minimum_required(VERSION 3.25)

set(staged_before "")
if(EXISTS "${MANIFEST}")
  file(STRINGS "${MANIFEST}" staged_before)
endif()
set(staged_now "")

function(stage source name)
  set(destination "${STAGE}/${name}")
  file(SHA256 "${source}" new_hash)
  set(entry "${new_hash} ${name}")
  if(EXISTS "${destination}")
    file(SHA256 "${destination}" old_hash)
    if(NOT old_hash STREQUAL new_hash AND NOT "${old_hash} ${name}" IN_LIST staged_before)
      message(STATUS "${destination} was changed since it was staged and is kept")
      return()
    endif()
  endif()
  get_filename_component(directory "${destination}" DIRECTORY)
  file(MAKE_DIRECTORY "${directory}")
  file(COPY_FILE "${source}" "${destination}" ONLY_IF_DIFFERENT)
  set(staged_now ${staged_now} "${entry}" PARENT_SCOPE)
endfunction()

file(GLOB_RECURSE shipped RELATIVE "${SOURCE}" "${SOURCE}/*")
foreach(name IN LISTS shipped)
  get_filename_component(leaf "${name}" NAME)
  get_filename_component(directory "${name}" DIRECTORY)
  file(MAKE_DIRECTORY "${STAGE}/${directory}")
  if(NOT leaf STREQUAL ".gitkeep" AND NOT name STREQUAL "README.md")
    stage("${SOURCE}/${name}" "${name}")
  endif()
endforeach()

# Both simulator generations fly from the same airports.
stage("${SOURCE}/bin/fs9.wld" "bin/fs2002.wld")
stage("${HELP}" "nv.html")

list(JOIN staged_now "\n" lines)
file(WRITE "${MANIFEST}" "${lines}\n")
