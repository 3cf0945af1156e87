# Settings and helper functions shared by every target of the tree.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_AUTOMOC OFF)
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

set(FOLIVEX_SANITIZE "" CACHE STRING "Value of -fsanitize= for the whole tree, or empty")
option(FOLIVEX_COVERAGE "Instrument for line coverage" OFF)
option(FOLIVEX_FUZZ "Build for the fuzzer, on the libraries that fuzz/build-parts made" OFF)

# Warnings are for our own code alone, so they hang on an interface target and not on the directory.
add_library(folivex_warnings INTERFACE)
target_compile_options(folivex_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

# A sanitizer must see every object, test programs and libraries alike.
if(FOLIVEX_SANITIZE)
  add_compile_options(-fsanitize=${FOLIVEX_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${FOLIVEX_SANITIZE})
endif()
if(FOLIVEX_FUZZ)
  # These two compare types across libraries that hide theirs.
  add_compile_options(-fno-sanitize=function,vptr)
  link_directories(BEFORE ${CMAKE_BINARY_DIR}/parts/lib)
  # qpdf is a static library there, and brings these along.
  link_libraries(jpeg z)
endif()
if(FOLIVEX_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()

# folivex_shared_library(NAME SOURCES... ) builds libNAME.so, on Windows NAME.dll, which exports only what its public
# header marks. -Bsymbolic keeps two libraries with operations of the same name apart.
function(folivex_shared_library name)
  add_library(${name} SHARED ${ARGN})
  target_link_libraries(${name} PRIVATE folivex_warnings)
  set_target_properties(${name} PROPERTIES
    C_VISIBILITY_PRESET hidden CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_link_options(${name} PRIVATE -Wl,-Bsymbolic -Wl,--exclude-libs,ALL)
  if(NOT FOLIVEX_SANITIZE)
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
endfunction()

# folivex_static_library(NAME SOURCES...) is a module of the program: reached as <folder/File.h>.
function(folivex_static_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PRIVATE folivex_warnings)
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
endfunction()

# Headers that nearly every file of a kind includes, precompiled once for all targets of the kind: each
# copy would take hundreds of megabytes. (Linking Qt gives every target -fPIC, so that one copy fits
# libraries and programs alike.)
#   folivex_precompiled(NAME LIBS ... HEADERS ... [OPTIONS ...])
function(folivex_precompiled name)
  cmake_parse_arguments(arg "" "" "LIBS;HEADERS;OPTIONS" ${ARGN})
  add_library(${name} OBJECT EXCLUDE_FROM_ALL ${CMAKE_SOURCE_DIR}/cmake/precompiled.cpp)
  target_link_libraries(${name} PRIVATE folivex_warnings ${arg_LIBS})
  target_compile_options(${name} PRIVATE ${arg_OPTIONS})
  target_precompile_headers(${name} PRIVATE ${arg_HEADERS}
    <functional> <memory> <optional> <string> <vector>)
endfunction()
set(qt_core_headers <QtCore/QString> <QtCore/QStringList> <QtCore/QFile> <QtCore/QDir> <QtCore/QDateTime>)
folivex_precompiled(folivex_qt_core_headers LIBS Qt6::Core HEADERS ${qt_core_headers})
folivex_precompiled(folivex_qt_widgets_headers LIBS Qt6::Widgets HEADERS <QtWidgets/QtWidgets>)

# folivex_qt_core_pch(TARGET) is for code on Qt Core alone, folivex_qt_widgets_pch(TARGET) for windows.
function(folivex_qt_core_pch target)
  target_precompile_headers(${target} REUSE_FROM folivex_qt_core_headers)
endfunction()
function(folivex_qt_widgets_pch target)
  target_precompile_headers(${target} REUSE_FROM folivex_qt_widgets_headers)
endfunction()

# Tests run once after each build: what makes them compile quickly counts, not what makes them fast.
set(folivex_test_options $<$<CONFIG:Release>:-O0>)

# The headers of tests, when there are any.
function(folivex_test_headers)
  find_package(GTest REQUIRED)
  folivex_precompiled(folivex_test_core_headers OPTIONS ${folivex_test_options}
    LIBS Qt6::Core GTest::gtest HEADERS ${qt_core_headers} <gtest/gtest.h>)
  folivex_precompiled(folivex_test_window_headers OPTIONS ${folivex_test_options}
    LIBS Qt6::Widgets GTest::gtest HEADERS <QtWidgets/QtWidgets> <gtest/gtest.h>)
  # Built by "make test" and not by what a user builds.
  add_custom_target(folivex_tests)
endfunction()

# folivex_test(NAME SOURCES... [LIBS ...] [WINDOWS]) adds one GoogleTest program and registers each of
# its cases. WINDOWS: the program opens windows, without a display (tests/support/WindowBench.h).
function(folivex_test name)
  cmake_parse_arguments(arg "WINDOWS" "" "SOURCES;LIBS;DEPENDS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE folivex_warnings ${arg_LIBS})
  target_compile_options(${name} PRIVATE ${folivex_test_options})
  if(arg_WINDOWS)
    target_sources(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests/support/window_main.cpp)
    target_link_libraries(${name} PRIVATE GTest::gtest folivex_widgets Qt6::Test)
    target_precompile_headers(${name} REUSE_FROM folivex_test_window_headers)
  else()
    target_link_libraries(${name} PRIVATE GTest::gtest_main Qt6::Core)
    target_precompile_headers(${name} REUSE_FROM folivex_test_core_headers)
  endif()
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
  target_compile_definitions(${name} PRIVATE
    FOLIVEX_BIN_DIR="${folivex_drive}${CMAKE_BINARY_DIR}/bin"
    FOLIVEX_SOURCE_DIR="${folivex_drive}${CMAKE_SOURCE_DIR}")
  # Tests name their helpers alike in each file.
  set_target_properties(${name} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests UNITY_BUILD OFF)
  add_dependencies(folivex_tests ${name})
  if(arg_DEPENDS)
    add_dependencies(${name} ${arg_DEPENDS})
  endif()
  if(WIN32)
    # What tests call that is not there, and that is left out when tests/windows/run starts them under Wine.
    target_include_directories(${name} BEFORE PRIVATE ${CMAKE_SOURCE_DIR}/tests/windows/posix)
    return()
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8"
    TIMEOUT 300)
endfunction()
