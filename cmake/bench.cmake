# The benchmarks: one program from all files of bench/.

file(GLOB bench_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/bench/*.cpp")
find_package(benchmark QUIET)
if(bench_sources AND benchmark_FOUND)
  add_executable(norvane-bench ${bench_sources})
  target_include_directories(norvane-bench PRIVATE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/bench")
  target_compile_definitions(norvane-bench PRIVATE "NORVANE_SOURCE_DIR=\"${PROJECT_SOURCE_DIR}\"")
  foreach(library norvane_cli ${NORVANE_CORE} norvane_simhost)
    if(TARGET ${library})
      target_link_libraries(norvane-bench PRIVATE ${library})
    endif()
  endforeach()
  target_link_libraries(norvane-bench PRIVATE benchmark::benchmark benchmark::benchmark_main)
  foreach(program norvane-cli norvane-sim)
    if(TARGET ${program})
      add_dependencies(norvane-bench ${program})
    endif()
  endforeach()
  if(TARGET norvane-sim)
    target_compile_definitions(norvane-bench PRIVATE "NORVANE_SIM=\"$<TARGET_FILE:norvane-sim>\"")
  endif()
  if(TARGET norvane-cli)
    target_compile_definitions(norvane-bench PRIVATE "NORVANE_CLI=\"$<TARGET_FILE:norvane-cli>\"")
  endif()
endif()

# What the window costs: how long it goes without handling events, what a big log takes on the screen, and an empty window to
# compare its memory with.
pkg_check_modules(BENCH_HTTPLIB QUIET IMPORTED_TARGET cpp-httplib)
if(NORVANE_WINDOW AND benchmark_FOUND AND BENCH_HTTPLIB_FOUND)
  add_executable(norvane-window-bench "${PROJECT_SOURCE_DIR}/bench/window/gaps_bench.cpp"
                 "${PROJECT_SOURCE_DIR}/bench/window/log_grid_bench.cpp" "${PROJECT_SOURCE_DIR}/bench/big_log.cpp"
                 "${PROJECT_SOURCE_DIR}/tests/servers/test_servers.cpp"
                 "${PROJECT_SOURCE_DIR}/tests/support/child_process.cpp")
  target_include_directories(norvane-window-bench PRIVATE "${PROJECT_SOURCE_DIR}/tests" "${PROJECT_SOURCE_DIR}/bench")
  target_compile_definitions(norvane-window-bench PRIVATE "NORVANE_SOURCE_DIR=\"${PROJECT_SOURCE_DIR}\"")
  target_link_libraries(norvane-window-bench PRIVATE norvane_ui ${NORVANE_CORE} PkgConfig::BENCH_HTTPLIB Threads::Threads
                        benchmark::benchmark)
  add_executable(empty-window "${PROJECT_SOURCE_DIR}/bench/window/empty_window.cpp")
  target_link_libraries(empty-window PRIVATE Qt6::Widgets)
endif()
