# What every target of the project shares: the language, the warnings, the sanitizers, and the shape
# of a library. A library links only the libraries below it, so an arrow that points the wrong way
# does not link.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOUIC ON)

option(KESTRIX_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)

option(KESTRIX_PRECOMPILE "Compile the toolkit's headers once for many files" OFF)

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

# kestrix_headers(<name> HEADERS <headers> LINK <libraries>): headers that are compiled once, for all
# that takes them by kestrix_take_headers. A taker links the same libraries, and may link more. Each
# file still includes what it uses: the release preset builds without this, and finds what is missing.
function(kestrix_headers name)
  cmake_parse_arguments(ARG "" "" "HEADERS;LINK" ${ARGN})
  if(NOT KESTRIX_PRECOMPILE)
    return()
  endif()
  set(source "${PROJECT_BINARY_DIR}/${name}.cpp")
  file(GENERATE OUTPUT "${source}" CONTENT "int main() { return 0; }\n")
  add_executable(${name} EXCLUDE_FROM_ALL "${source}")
  set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTOUIC OFF)
  target_link_libraries(${name} PRIVATE ${ARG_LINK} kestrix_options)
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

function(kestrix_take_headers target name)
  if(TARGET ${name})
    target_precompile_headers(${target} REUSE_FROM ${name})
  endif()
endfunction()

kestrix_headers(kestrix_toolkit_headers
  HEADERS <QtWidgets>
  LINK Qt6::Widgets)

# kestrix_library(<folder> [FORMS] SOURCES <files> LINK <what it may include>); FORMS: it has widgets.
function(kestrix_library name)
  cmake_parse_arguments(ARG "FORMS" "" "SOURCES;LINK" ${ARGN})
  add_library(kestrix_${name} STATIC ${ARG_SOURCES})
  target_include_directories(kestrix_${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(kestrix_${name} PUBLIC ${ARG_LINK} PRIVATE kestrix_options)
  if(ARG_FORMS)
    kestrix_take_headers(kestrix_${name} kestrix_toolkit_headers)
  endif()
endfunction()

# kestrix_qpdf_sources(<files>): they include libqpdf, whose class JSON holds a vector of itself. The
# Clang of Debian 12 can't read that as C++20, so for Clang they are C++17.
function(kestrix_qpdf_sources)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS -std=c++17)
  endif()
endfunction()

# kestrix_tests(<folder> [BARE] SOURCES <files> LINK <libraries>): one test program a folder. Each test
# is one CTest entry and runs offscreen unless it opens a display of its own. BARE: without the toolkit.
function(kestrix_tests name)
  cmake_parse_arguments(ARG "BARE" "" "SOURCES;LINK" ${ARGN})
  add_executable(kestrix_tests_${name} ${ARG_SOURCES})
  target_include_directories(kestrix_tests_${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(kestrix_tests_${name} PRIVATE ${ARG_LINK} kestrix_options GTest::gmock)
  if(NOT ARG_BARE)
    kestrix_take_headers(kestrix_tests_${name} kestrix_test_headers)
  endif()
  gtest_discover_tests(kestrix_tests_${name}
    DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 300 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()
include(GoogleTest)

# kestrix_schema(<variable> <register, lists or study>): the SQL files that a database of this kind is
# made from, in their order: its first version, and the step to each later one.
function(kestrix_schema result kind)
  file(GLOB steps CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/data/${kind}.*.sql")
  list(SORT steps COMPARE NATURAL)
  set(${result} "${PROJECT_SOURCE_DIR}/data/${kind}.sql" ${steps} PARENT_SCOPE)
endfunction()
