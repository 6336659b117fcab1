# The rules every target of the project is built by.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Precompiled headers are remembered by their content; their time stamps say nothing.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
endif()

add_library(spectrane_rules INTERFACE)
target_include_directories(spectrane_rules INTERFACE ${CMAKE_SOURCE_DIR}/src)
if(MSVC)
  target_compile_options(spectrane_rules INTERFACE /W4 /WX /utf-8)
else()
  target_compile_options(spectrane_rules INTERFACE -Wall -Wextra -Wconversion -Wshadow -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # Warns of its own inlined std::string concatenation in optimised builds.
    target_compile_options(spectrane_rules INTERFACE -Wno-restrict)
  endif()
endif()
target_compile_definitions(
  spectrane_rules
  INTERFACE QT_NO_CAST_FROM_ASCII
            QT_NO_CAST_TO_ASCII
            QT_NO_CAST_FROM_BYTEARRAY
            QT_NO_CONTEXTLESS_CONNECT
            QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
            QT_STRICT_ITERATORS
            SPECTRANE_VERSION="${PROJECT_VERSION}"
            SPECTRANE_BRAND_NUMBER=${SPECTRANE_BRAND_NUMBER})
if(SPECTRANE_SANITIZE)
  # Without the checks at every access through a pointer: they cost as much as all others together, address sees what they
  # see where it matters, and fuzzing has them. What is tested is watched; the tests' own sources, which take longest to
  # compile, are not (SPECTRANE_UNWATCHED).
  set(watched "$<NOT:$<BOOL:$<TARGET_PROPERTY:SPECTRANE_UNWATCHED>>>")
  target_compile_options(
    spectrane_rules
    INTERFACE "$<${watched}:-fsanitize=address,undefined;-fno-sanitize=null,alignment,vptr,object-size;-fno-sanitize-recover=all>")
  target_compile_definitions(spectrane_rules INTERFACE SPECTRANE_SANITIZED)
  target_link_options(spectrane_rules INTERFACE -fsanitize=address,undefined)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The instrumented standard library looks uninitialised to the compiler.
    target_compile_options(spectrane_rules INTERFACE -Wno-maybe-uninitialized)
  endif()
elseif(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  include(Hardening)
endif()

# Where several sources are compiled as one, they are sources of one folder, twenty at most: two folders may give the same
# name to what is theirs alone.
function(spectrane_unity_by_folder target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
  foreach(source ${ARGN})
    if(source MATCHES "[.]cpp$")
      get_filename_component(folder ${source} DIRECTORY)
      string(MAKE_C_IDENTIFIER "${folder}" room)
      if(NOT DEFINED number_${room})
        set(number_${room} 0)
      endif()
      math(EXPR batch "${number_${room}} / 20")
      math(EXPR number_${room} "${number_${room}} + 1")
      set(group "${room}_${batch}")
      set_source_files_properties(${source} PROPERTIES UNITY_GROUP "${group}")
    endif()
  endforeach()
endfunction()

# One floor of the house: a static library that links only what it may use, so an include that runs upward does not link.
function(spectrane_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  spectrane_unity_by_folder(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC spectrane_rules ${ARG_USES})
endfunction()

# A program of the project.
function(spectrane_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE spectrane_rules ${ARG_USES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  if(COMMAND spectrane_hardened_program)
    spectrane_hardened_program(${name})
  endif()
endfunction()

# Headers that most sources of a target with windows begin with.
function(spectrane_window_headers)
  foreach(name ${ARGN})
    target_precompile_headers(
      ${name}
      PRIVATE
      <QAbstractTableModel>
      <QApplication>
      <QDialog>
      <QFileInfo>
      <QLabel>
      <QMainWindow>
      <QMenu>
      <QPainter>
      <QSettings>
      <QTimer>
      <QToolBar>
      <cstdint>
      <deque>
      <functional>
      <map>
      <memory>
      <string>
      <vector>)
  endforeach()
endfunction()
