# Puts what the project ships in data/ into the program directory, at every build: it costs nothing when all is in place.

function(norvane_stage_data)
  add_custom_target(norvane_stage ALL
    COMMAND ${CMAKE_COMMAND} "-DSOURCE=${PROJECT_SOURCE_DIR}/data" "-DSTAGE=${NORVANE_STAGE_DIR}"
            "-DMANIFEST=${CMAKE_BINARY_DIR}/staged.sha256" -P "${PROJECT_SOURCE_DIR}/cmake/stage_files.cmake"
    COMMENT "Staging the program directory"
    VERBATIM)
  foreach(program norvane norvane-cli norvane-sim)
    if(TARGET ${program})
      add_dependencies(${program} norvane_stage)
    endif()
  endforeach()
endfunction()
