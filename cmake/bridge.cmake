# The one program for Windows, norvane-bridge.exe, and what tests it. It takes what it needs of common/ and simlink/ and
# stands on no library but the compiler's own, which is linked into it: a single file to copy.

# Said aloud for clang-tidy, which does not know where this compiler keeps the headers of C++.
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES ${CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES})
list(FILTER CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES INCLUDE REGEX "/c\\+\\+")

# Libraries that are headers alone serve every system. They get a directory of their own: their neighbours in /usr/include
# are this computer's.
foreach(library fmt CLI)
  find_path(NORVANE_${library}_HEADERS ${library} PATHS /usr/include /usr/local/include
            NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/include")
  file(CREATE_LINK "${NORVANE_${library}_HEADERS}/${library}" "${CMAKE_BINARY_DIR}/include/${library}" SYMBOLIC)
endforeach()

set(bridge_sources
  common/code_page common/number common/run_error common/text
  simlink/catalogue simlink/link_address simlink/link_server simlink/link_socket simlink/message_transport_windows
  simlink/mod_fsuipc simlink/offset_area simlink/request_block simlink/socket_transport
  simlink/system_sockets simlink/system_sockets_windows
  bridge/bridge)
list(TRANSFORM bridge_sources PREPEND "${PROJECT_SOURCE_DIR}/src/")
list(TRANSFORM bridge_sources APPEND ".cpp")

add_library(norvane_bridge STATIC ${bridge_sources})
target_include_directories(norvane_bridge PUBLIC "${PROJECT_SOURCE_DIR}/src")
target_include_directories(norvane_bridge SYSTEM PUBLIC "${CMAKE_BINARY_DIR}/include")
# Windows 7 is the oldest system that is meant.
target_compile_definitions(norvane_bridge PUBLIC WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601 FMT_HEADER_ONLY)
target_link_libraries(norvane_bridge PUBLIC ws2_32)
target_link_options(norvane_bridge PUBLIC -static -s)

add_executable(norvane-bridge "${PROJECT_SOURCE_DIR}/src/bridge/main.cpp")
target_link_libraries(norvane-bridge PRIVATE norvane_bridge)
set_target_properties(norvane-bridge PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${NORVANE_STAGE_DIR}")

include(CTest)
if(BUILD_TESTING)
  add_executable(test-simulator "${PROJECT_SOURCE_DIR}/tests/bridge/test_simulator.cpp")
  add_executable(test-transport "${PROJECT_SOURCE_DIR}/tests/bridge/test_transport.cpp")
  foreach(program test-simulator test-transport)
    target_include_directories(${program} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${program} PRIVATE norvane_bridge)
  endforeach()

  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  set(NORVANE_PROGRAMS "${PROJECT_SOURCE_DIR}/build/ci/norvane" CACHE PATH "Where norvane-cli and norvane-sim stand")
  add_test(NAME bridge
    COMMAND Python3::Interpreter -B "${PROJECT_SOURCE_DIR}/tests/bridge/bridge_test.py"
            "${CMAKE_BINARY_DIR}" "$<TARGET_FILE:norvane-bridge>" "${NORVANE_PROGRAMS}")
  set_tests_properties(bridge PROPERTIES TIMEOUT 600)
endif()
