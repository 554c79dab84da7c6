# Fuzz targets, for Clang: every file of fuzz/ is a program fuzz_<name> that reads what comes from outside, and a test fuzz.<name>
# of two seconds. What they read with must be instrumented, so they belong to the build that has the sanitizers.

file(GLOB fuzz_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/fuzz/*.cpp")
foreach(source IN LISTS fuzz_sources)
  get_filename_component(name ${source} NAME_WE)
  set(target fuzz_${name})
  set(window "")
  if(name STREQUAL "response_page")
    if(NOT NORVANE_WINDOW)
      continue()
    endif()
    set(window norvane_ui)
  endif()
  add_executable(${target} ${source})
  norvane_precompile(${target})
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/fuzz")
  target_link_libraries(${target} PRIVATE norvane_test_support ${window} norvane_simhost ${NORVANE_CORE})
  target_link_options(${target} PRIVATE -fsanitize=fuzzer)
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/fuzz")
  list(APPEND fuzz_targets ${target})

  add_test(NAME fuzz.${name}
    COMMAND "${PROJECT_SOURCE_DIR}/scripts/fuzz_target" $<TARGET_FILE:${target}>
            "${PROJECT_SOURCE_DIR}/fuzz/corpus/${name}" "${CMAKE_BINARY_DIR}/fuzz/test/${name}" 2)
  set_tests_properties(fuzz.${name} PROPERTIES LABELS fuzz TIMEOUT 300)
endforeach()
add_custom_target(fuzz DEPENDS ${fuzz_targets})
