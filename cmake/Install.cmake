# What "cmake --install" lays down. The program finds its libraries and helpers beside itself, so they
# share a folder of their own; the search path gets a link to each program.
include(GNUInstallDirs)

set(home ${CMAKE_INSTALL_LIBDIR}/folivex)
set(documents ${CMAKE_INSTALL_DATADIR}/doc/folivex)
set(programs folivex Scanlite Sheetflat)
install(TARGETS ${programs} GlyphrunU CleftorU MelderU UpdatesU
  RUNTIME DESTINATION ${home} LIBRARY DESTINATION ${home})
install(FILES samples/example.fxs DESTINATION ${home})
if(NOT WIN32)
  file(RELATIVE_PATH way ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR}/folivex)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/links)
  foreach(program ${programs})
    file(CREATE_LINK ${way}/${program} ${CMAKE_BINARY_DIR}/links/${program} SYMBOLIC)
    install(FILES ${CMAKE_BINARY_DIR}/links/${program} DESTINATION ${CMAKE_INSTALL_BINDIR})
  endforeach()
endif()
install(DIRECTORY samples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/folivex/samples
  FILES_MATCHING PATTERN "*.pdf" PATTERN "*.fxs" PATTERN "*.txt" PATTERN "README.md")
# Pages name their pictures without a path.
install(DIRECTORY app/help/pages/ app/help/pictures/ DESTINATION ${documents}/help)
install(FILES README.md CHANGELOG.md LICENSE DESTINATION ${documents})
