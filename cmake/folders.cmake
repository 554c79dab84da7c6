# One library a folder of src/, and the programs whose main.cpp stands in such a folder.

# Files for one system alone end in _windows or _posix.
if(WIN32)
  set(NORVANE_FOREIGN_SOURCES "_posix\\.cpp$")
else()
  set(NORVANE_FOREIGN_SOURCES "_windows\\.cpp$")
endif()

# Adds the library norvane_<folder>, which links the libraries of `uses`. A folder without files gives no target, a folder
# of headers alone an interface library.
function(norvane_add_folder folder uses)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp")
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/${folder}/*.h")
  list(FILTER sources EXCLUDE REGEX "${NORVANE_FOREIGN_SOURCES}")
  list(REMOVE_ITEM sources "${PROJECT_SOURCE_DIR}/src/${folder}/main.cpp")
  if(NOT sources AND NOT headers)
    return()
  endif()

  set(target norvane_${folder})
  if(sources)
    add_library(${target} STATIC ${sources})
    norvane_precompile(${target})
    if(NORVANE_FUZZ AND NOT folder STREQUAL "ui")
      # Inputs a second count: Clang inlines nothing below this, not even the library's own short functions.
      target_compile_options(${target} PRIVATE -O2)
    endif()
    set(scope PUBLIC)
  else()
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_sources(${target} ${scope} FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}/src" FILES ${headers})
  target_include_directories(${target} ${scope} "${PROJECT_SOURCE_DIR}/src")
  foreach(library IN LISTS uses)
    if(TARGET ${library})
      target_link_libraries(${target} ${scope} ${library})
    endif()
  endforeach()
  target_link_libraries(${target} ${scope} ${NORVANE_LIBRARIES_${folder}})
endfunction()

# Adds the program `program` from src/<folder>/main.cpp. The folder's other files are the library norvane_<folder>, so that
# tests can link them.
function(norvane_add_program program folder uses)
  norvane_add_folder(${folder} "${uses}")
  file(GLOB main CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/${folder}/main.cpp")
  if(NOT main)
    return()
  endif()
  add_executable(${program} ${main})
  if(TARGET norvane_${folder})
    target_link_libraries(${program} PRIVATE norvane_${folder})
  else()
    target_link_libraries(${program} PRIVATE ${uses} ${NORVANE_LIBRARIES_${folder}})
  endif()
  set_target_properties(${program} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${NORVANE_STAGE_DIR}")
endfunction()
