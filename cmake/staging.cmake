# Puts what the project ships in data/ into the program directory.

function(norvane_stage_data)
  file(GLOB_RECURSE shipped CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/data/*")
  set(stamp "${CMAKE_BINARY_DIR}/staged.stamp")
  add_custom_command(
    OUTPUT "${stamp}"
    COMMAND ${CMAKE_COMMAND} "-DSOURCE=${PROJECT_SOURCE_DIR}/data" "-DSTAGE=${NORVANE_STAGE_DIR}"
            "-DMANIFEST=${CMAKE_BINARY_DIR}/staged.sha256" -P "${PROJECT_SOURCE_DIR}/cmake/stage_files.cmake"
    COMMAND ${CMAKE_COMMAND} -E touch "${stamp}"
    DEPENDS ${shipped} "${PROJECT_SOURCE_DIR}/cmake/stage_files.cmake"
    COMMENT "Staging the program directory"
    VERBATIM)
  add_custom_target(norvane_stage ALL DEPENDS "${stamp}")
  foreach(program norvane-cli norvane-sim)
    if(TARGET ${program})
      add_dependencies(${program} norvane_stage)
    endif()
  endforeach()
endfunction()
