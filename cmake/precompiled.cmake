# Library headers read once a build instead of once a file, for a preset whose compiler takes longer over them than over our
# code. A header that a file forgets to include shows in the other presets.

option(NORVANE_PRECOMPILED "Read the libraries' headers once a build" OFF)

set(NORVANE_PRECOMPILED_HEADERS
  <algorithm> <array> <chrono> <cmath> <deque> <filesystem> <functional> <map> <memory> <optional> <span> <string>
  <string_view> <utility> <vector> <fmt/format.h>)

# Targets that are compiled alike share one set: that of the folder common, or that of
# the tests' own support.
function(norvane_precompile target)
  if(NOT NORVANE_PRECOMPILED)
    return()
  endif()
  if(target STREQUAL "norvane_common")
    target_precompile_headers(${target} PRIVATE ${NORVANE_PRECOMPILED_HEADERS})
  elseif(target STREQUAL "norvane_test_support")
    target_precompile_headers(${target} PRIVATE ${NORVANE_PRECOMPILED_HEADERS} <gmock/gmock.h> <gtest/gtest.h>)
  elseif(target STREQUAL "norvane_ui")
    target_precompile_headers(${target} PRIVATE ${NORVANE_PRECOMPILED_HEADERS} <QtWidgets>)
  elseif(target STREQUAL "test_ui")
    target_precompile_headers(${target} PRIVATE ${NORVANE_PRECOMPILED_HEADERS} <gmock/gmock.h> <gtest/gtest.h> <QtWidgets>)
  elseif(target STREQUAL "fuzz_response_page")
    # Alone with its flags: its set would cost more than it saves.
  elseif(target MATCHES "^(test_|fuzz_)")
    target_precompile_headers(${target} REUSE_FROM norvane_test_support)
  else()
    target_precompile_headers(${target} REUSE_FROM norvane_common)
  endif()
endfunction()
