# The rules that every target shares: warnings, floating point, sanitizers, include roots.

add_library(brenvolt_flags INTERFACE)
target_compile_options(brenvolt_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  # A fused multiply and add rounds once where the formulas round twice: figures must not depend on the processor.
  -ffp-contract=off)
if(BRENVOLT_WERROR)
  target_compile_options(brenvolt_flags INTERFACE -Werror)
endif()
# The compiler's own memory is small: to look for what it no longer needs takes a seventh of its time. A compiler cache
# keeps what was compiled with other options.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  target_compile_options(brenvolt_flags INTERFACE
    "SHELL:--param ggc-min-expand=300" "SHELL:--param ggc-min-heapsize=524288")
endif()
# Of a joined source the compiler does not know that its private types stay in it.
if(BRENVOLT_JOIN_SOURCES AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(brenvolt_flags INTERFACE -Wno-subobject-linkage)
endif()
if(BRENVOLT_SANITIZE)
  target_compile_options(brenvolt_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(brenvolt_flags INTERFACE -fsanitize=address,undefined)
endif()

set(brenvolt_standard_headers <algorithm> <array> <cstdint> <filesystem> <functional> <map> <memory> <optional> <set>
  <span> <string> <string_view> <unordered_map> <utility> <variant> <vector>)

# Qt's own options are not those of the other targets, so targets with windows share precompiled headers of their own.
set(brenvolt_window_headers <QApplication> <QDialog> <QMainWindow> <QPainter> <QSettings> <QString> <QWidget>)

# brenvolt_precompile(TARGET FIRST [header ...])
# The targets that name the same FIRST share precompiled standard headers, and these: they must agree in their options.
function(brenvolt_precompile target first)
  if(NOT BRENVOLT_PRECOMPILE OR NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    return()
  endif()
  get_property(owner GLOBAL PROPERTY brenvolt_precompiled_${first})
  if(owner)
    target_precompile_headers(${target} REUSE_FROM ${owner})
  else()
    target_precompile_headers(${target} PRIVATE ${brenvolt_standard_headers} ${ARGN})
    set_property(GLOBAL PROPERTY brenvolt_precompiled_${first} ${target})
  endif()
endfunction()

# brenvolt_quick_compile(TARGET)
# Test sources are compiled once and run for milliseconds: half the compile time matters more than their speed. What
# they link stays as optimised as what users run. BRENVOLT_OPTIMISE_TESTS leaves the build type's own options alone.
function(brenvolt_quick_compile target)
  if(NOT BRENVOLT_OPTIMISE_TESTS)
    target_compile_options(${target} PRIVATE $<$<CONFIG:RelWithDebInfo>:-Og>)
  endif()
endfunction()

# brenvolt_unhurried(TARGET ...)
# What these targets do waits for people, files or other programs: dialogs, windows, command lines, lists. With fewer
# rounds of optimisation they take a quarter less time to compile, and nobody notices when they run.
function(brenvolt_unhurried)
  if(NOT CMAKE_CXX_FLAGS_RELWITHDEBINFO MATCHES "-O2")
    return() # other options are the user's own choice
  endif()
  foreach(target IN LISTS ARGN)
    target_compile_options(${target} PRIVATE $<$<CONFIG:RelWithDebInfo>:-O1>)
  endforeach()
endfunction()

# brenvolt_library(NAME [WINDOWS] SOURCES a.cpp ... [DEPENDS target ...])
# A folder of the project. src/ and the root are the include roots: "data/wire_sizing.h", "platform/tables.h". WINDOWS is
# for folders whose sources use Qt.
function(brenvolt_library name)
  cmake_parse_arguments(ARG "WINDOWS" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}/src" "${CMAKE_SOURCE_DIR}")
  target_link_libraries(${name} PUBLIC brenvolt_flags ${ARG_DEPENDS})
  if(ARG_WINDOWS)
    brenvolt_precompile(${name} windows ${brenvolt_window_headers})
  else()
    brenvolt_precompile(${name} libraries)
  endif()
  brenvolt_layer(${name})
endfunction()

# brenvolt_compile_apart(SOURCE ...)
# Sources of this folder that use short names, which others have for something else, are not joined with them.
function(brenvolt_compile_apart)
  set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# brenvolt_loaded_library(SOURCE MACRO NAME PREFIX)
# The library NAME, found by pkg-config as PREFIX, is loaded by a source of this folder when it is first needed: linked,
# every start of a program would pay for it. MACRO becomes the name that the dynamic loader looks for. The package needs
# it all the same: brenvolt_loaded_packages has the Debian packages of all such libraries.
function(brenvolt_loaded_library source macro name prefix)
  find_library(${prefix}_FILE NAMES ${name} HINTS ${${prefix}_LIBRARY_DIRS} REQUIRED)
  execute_process(COMMAND "${CMAKE_OBJDUMP}" -p "${${prefix}_FILE}" OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
  if(NOT headers MATCHES "SONAME +([^ \n]+)")
    message(FATAL_ERROR "${${prefix}_FILE} has no name for the dynamic loader: it is not a shared library")
  endif()
  set(soname "${CMAKE_MATCH_1}")
  set_property(SOURCE ${source} APPEND PROPERTY COMPILE_DEFINITIONS "${macro}=\"${soname}\"")
  set_property(SOURCE ${source} APPEND PROPERTY INCLUDE_DIRECTORIES ${${prefix}_INCLUDE_DIRS})
  find_program(BRENVOLT_DPKG_QUERY dpkg-query)
  if(BRENVOLT_DPKG_QUERY)
    get_filename_component(folder "${${prefix}_FILE}" DIRECTORY)
    execute_process(COMMAND "${BRENVOLT_DPKG_QUERY}" -S "${folder}/${soname}" OUTPUT_VARIABLE owner ERROR_QUIET)
    if(owner MATCHES "^([^:]+):")
      set_property(GLOBAL APPEND PROPERTY brenvolt_loaded_packages "${CMAKE_MATCH_1}")
    endif()
  endif()
endfunction()

# brenvolt_add_test(NAME COMMAND program [argument ...] [BIN folder])
# Runs with the repository as working directory; BIN is the folder of the tool and its module.
function(brenvolt_add_test name)
  cmake_parse_arguments(ARG "" "BIN" "COMMAND" ${ARGN})
  if(NOT ARG_BIN)
    set(ARG_BIN "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
  endif()
  add_test(NAME ${name} COMMAND ${ARG_COMMAND} WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}")
  set(environment "BRENVOLT_BIN=${ARG_BIN}" LC_ALL=C QT_QPA_PLATFORM=offscreen)
  if(BRENVOLT_SANITIZE)
    list(APPEND environment
      "LSAN_OPTIONS=suppressions='${CMAKE_SOURCE_DIR}/cmake/known_leaks.txt':print_suppressions=0")
  endif()
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "${environment}")
endfunction()

# brenvolt_test_library(NAME SOURCES a.cpp ... [DEPENDS target ...])
# What several test programs share, compiled once.
function(brenvolt_test_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}/src" "${CMAKE_SOURCE_DIR}")
  target_compile_definitions(${name} PRIVATE DOCTEST_CONFIG_SUPER_FAST_ASSERTS)
  brenvolt_quick_compile(${name})
  target_link_libraries(${name} PUBLIC brenvolt_flags ${ARG_DEPENDS})
endfunction()

# brenvolt_test(NAME [WINDOWS] SOURCES a_test.cpp ... [DEPENDS target ...])
# One test program per folder. WINDOWS is for sources that use Qt.
function(brenvolt_test name)
  cmake_parse_arguments(ARG "WINDOWS" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/src" "${CMAKE_SOURCE_DIR}")
  target_compile_definitions(${name} PRIVATE DOCTEST_CONFIG_SUPER_FAST_ASSERTS)
  brenvolt_quick_compile(${name})
  target_link_libraries(${name} PRIVATE brenvolt_flags doctest_main ${ARG_DEPENDS})
  if(ARG_WINDOWS)
    # Qt's test library defines each program's own folder, so its programs cannot share.
    brenvolt_precompile(${name} ${name} <doctest/doctest.h> ${brenvolt_window_headers})
  else()
    brenvolt_precompile(${name} tests <doctest/doctest.h>)
  endif()
  brenvolt_add_test(${name} COMMAND ${name})
endfunction()
