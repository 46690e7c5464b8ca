# What every target of the project shares: the language, the warnings, the sanitizers, and the shape
# of a library. A library links only the libraries below it, so an arrow that points the wrong way
# does not link.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOUIC ON)

option(KESTRIX_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)

find_program(KESTRIX_CCACHE ccache)
if(KESTRIX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${KESTRIX_CCACHE}")
endif()

add_library(kestrix_options INTERFACE)
target_compile_options(kestrix_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
# Names are checked, texts are QStrings by intent, and no outdated Qt call slips in.
target_compile_definitions(kestrix_options INTERFACE
  QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(KESTRIX_SANITIZE)
  target_compile_options(kestrix_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(kestrix_options INTERFACE -fsanitize=address,undefined)
  target_compile_definitions(kestrix_options INTERFACE KESTRIX_SANITIZED)
  # The fuzz targets are led by which of our branches an input takes.
  if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
    target_compile_options(kestrix_options INTERFACE -fsanitize=fuzzer-no-link)
  endif()
endif()

# kestrix_library(<folder> SOURCES <files> LINK <what it may include>)
function(kestrix_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(kestrix_${name} STATIC ${ARG_SOURCES})
  target_include_directories(kestrix_${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(kestrix_${name} PUBLIC ${ARG_LINK} PRIVATE kestrix_options)
endfunction()

# kestrix_tests(<folder> SOURCES <files> LINK <libraries>): one test program a folder. Each test is
# one CTest entry and runs offscreen unless it opens a display of its own.
function(kestrix_tests name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(kestrix_tests_${name} ${ARG_SOURCES})
  target_include_directories(kestrix_tests_${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(kestrix_tests_${name} PRIVATE ${ARG_LINK} kestrix_options GTest::gmock)
  target_precompile_headers(kestrix_tests_${name} PRIVATE <gtest/gtest.h> <gmock/gmock.h> <QtCore>)
  gtest_discover_tests(kestrix_tests_${name}
    DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 300 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()
include(GoogleTest)
