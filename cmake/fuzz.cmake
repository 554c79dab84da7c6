# Fuzz targets, for Clang: every file of fuzz/ is a program fuzz_<name> that reads what comes from outside. The whole build is
# instrumented, so its directory is one of its own (preset fuzz).

set(NORVANE_FUZZ_FLAGS -fsanitize=fuzzer)
file(GLOB fuzz_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/fuzz/*.cpp")
foreach(source IN LISTS fuzz_sources)
  get_filename_component(name ${source} NAME_WE)
  set(target fuzz_${name})
  add_executable(${target} ${source})
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/fuzz")
  target_link_libraries(${target} PRIVATE norvane_test_support norvane_simhost ${NORVANE_CORE})
  if(name STREQUAL "response_page")
    target_link_libraries(${target} PRIVATE norvane_ui)
  endif()
  target_link_options(${target} PRIVATE ${NORVANE_FUZZ_FLAGS})
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/fuzz")
  list(APPEND fuzz_targets ${target})
endforeach()
add_custom_target(fuzz DEPENDS ${fuzz_targets})
