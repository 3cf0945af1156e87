# What "cmake --install" lays down. The program finds its libraries and helpers beside itself, so they
# share a folder of their own; the search path gets a link to each program.
if(WIN32)
  include(InstallWindows)
  return()
endif()
include(GNUInstallDirs)

# Not by the kind of machine: the programs find the samples from there.
set(home lib/folivex)
set(share ${CMAKE_INSTALL_DATADIR})
set(programs folivex Scanlite Sheetflat)
install(TARGETS ${programs} GlyphrunU CleftorU MelderU UpdatesU
  RUNTIME DESTINATION ${home} LIBRARY DESTINATION ${home})
install(FILES samples/example.fxs DESTINATION ${home})
file(RELATIVE_PATH way ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_PREFIX}/${home})
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/links)
foreach(program ${programs})
  file(CREATE_LINK ${way}/${program} ${CMAKE_BINARY_DIR}/links/${program} SYMBOLIC)
  install(FILES ${CMAKE_BINARY_DIR}/links/${program} DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${CMAKE_BINARY_DIR}/desktop/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()
install(DIRECTORY samples/ DESTINATION ${share}/folivex/samples
  FILES_MATCHING PATTERN "*.pdf" PATTERN "*.fxs" PATTERN "README.md" PATTERN papers EXCLUDE)
# To read in a browser; the window has them built in. Pages name their pictures without a path.
install(DIRECTORY app/help/pages/ app/help/pictures/ DESTINATION ${share}/doc/folivex/help)
install(FILES README.md CHANGELOG.md DESTINATION ${share}/doc/folivex)
install(FILES docs/farm.md docs/inbox.md docs/json.md docs/json.schema.json DESTINATION ${share}/doc/folivex/docs)
install(DIRECTORY docs/images DESTINATION ${share}/doc/folivex/docs)

# What desktops and shells look for.
set(made ${CMAKE_BINARY_DIR}/desktop)
install(FILES desktop/folivex.desktop DESTINATION ${share}/applications)
install(FILES desktop/folivex.mime.xml DESTINATION ${share}/mime/packages RENAME folivex.xml)
install(FILES ${made}/org.folivex.folivex.metainfo.xml DESTINATION ${share}/metainfo)
foreach(size 16 24 32 48 64 128 256)
  set(icons ${share}/icons/hicolor/${size}x${size})
  install(FILES ${made}/${size}.png DESTINATION ${icons}/apps RENAME folivex.png)
  install(FILES ${made}/${size}.png DESTINATION ${icons}/mimetypes RENAME application-x-folivex-setup.png)
endforeach()
install(FILES ${made}/folivex.bash DESTINATION ${share}/bash-completion/completions RENAME folivex)
install(FILES ${made}/folivex.zsh DESTINATION ${share}/zsh/vendor-completions RENAME _folivex)
install(FILES ${made}/folivex.fish DESTINATION ${share}/fish/vendor_completions.d)

# Inbox and farm find the program in the folder above their own, and there what they share.
install(DIRECTORY attempts/folivex_attempts DESTINATION ${home}/attempts
  FILES_MATCHING PATTERN "*.py" PATTERN __pycache__ EXCLUDE)
foreach(subject inbox farm)
  install(PROGRAMS ${subject}/folivex-${subject} DESTINATION ${home}/${subject})
  install(DIRECTORY ${subject}/folivex_${subject} DESTINATION ${home}/${subject}
    FILES_MATCHING PATTERN "*.py" PATTERN __pycache__ EXCLUDE)
  file(CREATE_LINK ${way}/${subject}/folivex-${subject} ${CMAKE_BINARY_DIR}/links/folivex-${subject} SYMBOLIC)
  install(FILES ${CMAKE_BINARY_DIR}/links/folivex-${subject} DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${CMAKE_BINARY_DIR}/${subject}/folivex-${subject}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()
if(CMAKE_SYSTEM_NAME STREQUAL Linux)
  install(DIRECTORY inbox/units/system inbox/units/user DESTINATION lib/systemd)
  install(FILES inbox/units/folivex-inbox.sysusers DESTINATION lib/sysusers.d RENAME folivex-inbox.conf)
endif()
