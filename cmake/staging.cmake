# Puts what the project ships in data/ into the program directory, at every build: it costs nothing when all is in place.

find_package(Python3 REQUIRED COMPONENTS Interpreter)

# The help is made anew when one of its pages or pictures changed; the script says which there are.
set(NORVANE_HELP "${CMAKE_BINARY_DIR}/nv.html")
add_custom_command(OUTPUT "${NORVANE_HELP}"
  COMMAND Python3::Interpreter -B "${PROJECT_SOURCE_DIR}/scripts/make_help.py" "${NORVANE_HELP}" "${NORVANE_HELP}.d"
  DEPENDS "${PROJECT_SOURCE_DIR}/scripts/make_help.py"
  DEPFILE "${NORVANE_HELP}.d"
  COMMENT "Making the help"
  VERBATIM)

function(norvane_stage_data)
  add_custom_target(norvane_stage ALL
    COMMAND ${CMAKE_COMMAND} "-DSOURCE=${PROJECT_SOURCE_DIR}/data" "-DSTAGE=${NORVANE_STAGE_DIR}"
            "-DHELP=${NORVANE_HELP}" "-DMANIFEST=${CMAKE_BINARY_DIR}/staged.sha256"
            -P "${PROJECT_SOURCE_DIR}/cmake/stage_files.cmake"
    DEPENDS "${NORVANE_HELP}"
    COMMENT "Staging the program directory"
    VERBATIM)
  foreach(program norvane norvane-cli norvane-sim)
    if(TARGET ${program})
      add_dependencies(${program} norvane_stage)
    endif()
  endforeach()
endfunction()
