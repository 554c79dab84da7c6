# What `cmake --install` puts where, and the Debian package that CPack makes of it. The programs find what they are shipped
# with in ../share/norvane; a pilot's program directory is filled from there.

include(GNUInstallDirs)
# What was built is installed: nothing is built for it.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

foreach(program norvane norvane-cli norvane-sim)
  if(TARGET ${program})
    install(TARGETS ${program} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
  endif()
endforeach()

# From the sources, not from the staged directory: that one is flown from, and may be the pilot's own by now.
set(NORVANE_SHARED "share/norvane")
install(DIRECTORY data/bin data/VA data/scenarios data/simulator DESTINATION "${NORVANE_SHARED}"
        PATTERN ".gitkeep" EXCLUDE)
install(FILES data/bin/fs9.wld DESTINATION "${NORVANE_SHARED}/bin" RENAME fs2002.wld)
install(FILES "${NORVANE_HELP}" DESTINATION "${NORVANE_SHARED}")

set(NORVANE_DOCUMENTS "share/doc/norvane")
install(DIRECTORY docs/VA_SAMPLE DESTINATION "${NORVANE_DOCUMENTS}")
install(FILES docs/airlines.md docs/airline-scripts.md docs/simulators.md packaging/copyright
        DESTINATION "${NORVANE_DOCUMENTS}")
install(FILES packaging/lintian-overrides DESTINATION "share/lintian/overrides" RENAME norvane)
install(PROGRAMS docs/airline_server.py DESTINATION "${NORVANE_DOCUMENTS}")

if(NORVANE_WINDOW)
  install(FILES src/ui/icons/norvane.svg DESTINATION "share/icons/hicolor/scalable/apps")
  install(FILES packaging/norvane.desktop DESTINATION "share/applications")
  install(FILES packaging/org.norvane.Norvane.metainfo.xml DESTINATION "share/metainfo")
endif()

# Manual pages and the package's changelog are installed compressed.
find_program(NORVANE_GZIP gzip REQUIRED)
function(norvane_install_compressed source name directory)
  set(compressed "${CMAKE_BINARY_DIR}/compressed/${name}.gz")
  add_custom_command(OUTPUT "${compressed}"
    COMMAND ${CMAKE_COMMAND} -E make_directory "${CMAKE_BINARY_DIR}/compressed"
    COMMAND "${NORVANE_GZIP}" -9nc "${source}" > "${compressed}"
    DEPENDS "${source}"
    VERBATIM)
  target_sources(norvane_compressed PRIVATE "${compressed}")
  install(FILES "${compressed}" DESTINATION "${directory}")
endfunction()

add_custom_target(norvane_compressed ALL)
norvane_install_compressed("${PROJECT_SOURCE_DIR}/packaging/changelog" changelog.Debian "${NORVANE_DOCUMENTS}")
file(GLOB manual_pages CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/man/*.1")
foreach(page IN LISTS manual_pages)
  get_filename_component(name "${page}" NAME)
  norvane_install_compressed("${page}" "${name}" "share/man/man1")
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME norvane)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The toolkit's plugin for Wayland, what opens pages in the browser, and whom to trust when posting to an airline.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, xdg-utils, ca-certificates")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "python3")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PACKAGE_CONTACT "Norvane maintainers <maintainers@norvane.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "flight companion for home flight simulators")
set(CPACK_PACKAGE_DESCRIPTION
"Norvane watches a flight in a running flight simulator from the gate to the
gate. It notes when the aircraft went out, off, on and in with fuel, weights,
speeds and positions, composes the ACARS messages of the flight, and leaves
the finished flight as a row in the pilot's flight log and, where asked for,
as a PIREP text file.
.
It fetches weather and flight plans, and posts PIREPs to the pilot's virtual
airline. The norvane program shows all this in a window, norvane-cli does it
without one, and norvane-sim stands where a simulator would.")
include(CPack)
