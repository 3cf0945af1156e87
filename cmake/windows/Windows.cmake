# What every target has to know when it is built for Windows, on the parts that build-parts laid down.
include_directories(SYSTEM ${FOLIVEX_WINDOWS_PARTS}/include)
link_directories(${FOLIVEX_WINDOWS_PARTS}/lib)
# The system's headers define names that are everybody's, and the parts are static but Qt.
add_compile_definitions(NOMINMAX WIN32_LEAN_AND_MEAN U_STATIC_IMPLEMENTATION CURL_STATICLIB)
set(CMAKE_SHARED_LIBRARY_PREFIX "")
# As Wine calls the root of this machine.
set(folivex_drive Z:)

# What is loaded beside the programs, so that their folder can be taken anywhere.
set(runtime)
foreach(name libgcc_s_seh-1 libstdc++-6 libwinpthread-1)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}.dll
    OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE)
  list(APPEND runtime ${file})
endforeach()
foreach(name Qt6Core Qt6Gui Qt6Widgets)
  list(APPEND runtime ${FOLIVEX_WINDOWS_PARTS}/bin/${name}.dll)
endforeach()
file(COPY ${runtime} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
foreach(plugin platforms/qwindows platforms/qoffscreen styles/qwindowsvistastyle)
  get_filename_component(folder ${plugin} DIRECTORY)
  file(COPY ${FOLIVEX_WINDOWS_PARTS}/plugins/${plugin}.dll DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${folder})
endforeach()

add_library(folivex_thread_ends OBJECT ${CMAKE_CURRENT_LIST_DIR}/ThreadEnds.cpp)
link_libraries($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:$<TARGET_OBJECTS:folivex_thread_ends>>)
