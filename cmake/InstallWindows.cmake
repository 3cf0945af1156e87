# What "cmake --install" lays down for Windows: one folder that may be taken anywhere. desktop/windows/make-installer packs
# it.
install(TARGETS folivex Scanlite Sheetflat GlyphrunU CleftorU MelderU UpdatesU RUNTIME DESTINATION .)
# What the programs load beside that lies there by now, as they need it to run at all.
install(DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/ DESTINATION . FILES_MATCHING PATTERN "*.dll"
  PATTERN samples EXCLUDE PATTERN "*U.dll" EXCLUDE PATTERN qoffscreen.dll EXCLUDE)

# Where the programs look for them.
install(FILES samples/example.fxs DESTINATION .)
install(DIRECTORY samples/ DESTINATION samples
  FILES_MATCHING PATTERN "*.pdf" PATTERN "*.fxs" PATTERN "README.md" PATTERN papers EXCLUDE)

install(DIRECTORY app/help/pages/ app/help/pictures/ DESTINATION help)
install(FILES README.md CHANGELOG.md DESTINATION .)
install(FILES docs/json.md docs/json.schema.json docs/windows.md DESTINATION docs)
install(DIRECTORY docs/images DESTINATION docs)

# The program's own licence, and those of all that it is made of: each part has laid down its own, and the compiler's
# libraries are parts, too.
install(FILES LICENSE DESTINATION . RENAME LICENSE.txt)
install(DIRECTORY ${FOLIVEX_WINDOWS_PARTS}/licences DESTINATION .)
foreach(package gcc-mingw-w64-x86-64-posix-runtime mingw-w64-x86-64-dev)
  install(FILES /usr/share/doc/${package}/copyright DESTINATION licences RENAME ${package}.txt)
endforeach()
