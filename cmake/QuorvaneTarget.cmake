# SPDX-License-Identifier: MIT
# How a target of ours is declared. Each takes SOURCES and LINK lists; without SOURCES a library or a
# test program is made of the .cpp files of its folder but those of EXCLUDE, looked up at each build:
#
#   quorvane_library(NAME CORE|GUI [SOURCES ... | EXCLUDE ...] [LINK ...] [PRIVATE_LINK ...])
#   quorvane_test(NAME [GUI] [SOURCES ... | EXCLUDE ...] [LINK ...])
#   quorvane_fuzz(NAME SOURCES ... [LINK ...])

include(${CMAKE_CURRENT_LIST_DIR}/Fence.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/Precompiled.cmake)

add_library(quorvane_options INTERFACE)
target_compile_options(quorvane_options INTERFACE
  -Wall -Wextra -Wold-style-cast -Wcast-qual -Wnon-virtual-dtor -Woverloaded-virtual -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # These three see faults in the inlined insides of std::string that are not there.
  target_compile_options(quorvane_options INTERFACE
    -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow)
endif()
if(QUORVANE_WARNINGS_AS_ERRORS)
  target_compile_options(quorvane_options INTERFACE -Werror)
endif()
target_compile_definitions(quorvane_options INTERFACE
  QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII
  QT_NO_URL_CAST_FROM_STRING
  QT_NO_FOREACH
  QT_NO_KEYWORDS
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_USE_QSTRINGBUILDER
  QUORVANE_VERSION="${PROJECT_VERSION}")

# What keeps a target in the logic: the fence before Qt's headers, and no library of the GUI.
function(quorvane_keep_in_logic target)
  target_include_directories(${target} BEFORE PRIVATE ${QUORVANE_FENCE})
  foreach(other IN LISTS ARGN)
    if(TARGET ${other})
      get_target_property(isGui ${other} QUORVANE_GUI)
      if(isGui)
        message(FATAL_ERROR "${target} belongs to the logic and may not link ${other}.")
      endif()
    endif()
  endforeach()
endfunction()

# Sets ARG_SOURCES to the folder's .cpp files if it is not set.
macro(quorvane_default_sources)
  if(NOT ARG_SOURCES)
    file(GLOB ARG_SOURCES CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} *.cpp)
    list(REMOVE_ITEM ARG_SOURCES "" ${ARG_EXCLUDE})
  endif()
endmacro()

# One library for each folder of src/. It puts only its own folder on the include path, so that the
# headers of a folder that is not linked cannot be included.
function(quorvane_library name)
  cmake_parse_arguments(ARG "CORE;GUI" "" "SOURCES;EXCLUDE;LINK;PRIVATE_LINK" ${ARGN})
  quorvane_default_sources()
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARG_LINK} Threads::Threads
                                PRIVATE quorvane_options ${ARG_PRIVATE_LINK})
  if(ARG_CORE)
    quorvane_keep_in_logic(${name} ${ARG_LINK} ${ARG_PRIVATE_LINK})
    target_link_libraries(${name} PUBLIC Qt6::Core)
  else()
    set_target_properties(${name} PROPERTIES AUTOMOC ON QUORVANE_GUI ON)
    target_link_libraries(${name} PUBLIC Qt6::Core Qt6::Gui Qt6::Widgets)
    quorvane_precompile_widgets(${name})
  endif()
endfunction()

# A program beside the product, of the logic or (GUI) of the screens.
function(quorvane_program name)
  cmake_parse_arguments(ARG "GUI" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE quorvane_options ${ARG_LINK})
  if(ARG_GUI)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  else()
    quorvane_keep_in_logic(${name} ${ARG_LINK})
  endif()
endfunction()

# One GoogleTest program, registered with CTest under its name. A GUI test brings its own main. Every
# program gets a home of its own, so that no test can reach the user's settings or Trash.
function(quorvane_test name)
  cmake_parse_arguments(ARG "GUI" "" "SOURCES;EXCLUDE;LINK" ${ARGN})
  quorvane_default_sources()
  if(ARG_GUI)
    quorvane_program(${name} GUI
                     SOURCES ${ARG_SOURCES} LINK ${ARG_LINK} Qt6::Test GTest::gtest GTest::gmock)
    quorvane_precompile_gui_tests(${name})
  else()
    quorvane_program(${name} SOURCES ${ARG_SOURCES}
                     LINK ${ARG_LINK} GTest::gtest GTest::gmock GTest::gtest_main)
    quorvane_precompile_tests(${name})
  endif()
  add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/cmake/run-isolated $<TARGET_FILE:${name}>)
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
  if(QUORVANE_SANITIZE MATCHES "thread")
    set_tests_properties(${name} PROPERTIES
      ENVIRONMENT "TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/tsan.supp")
  elseif(QUORVANE_SANITIZE MATCHES "address")
    set_tests_properties(${name} PROPERTIES
      ENVIRONMENT "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0")
  endif()
endfunction()

# A test program once more, on a session bus of its own; skipped where the machine has none to give.
function(quorvane_bus_test name)
  add_test(NAME ${name}_on_a_bus
           COMMAND ${CMAKE_SOURCE_DIR}/cmake/run-isolated
                   ${CMAKE_SOURCE_DIR}/tests/support/on-a-bus $<TARGET_FILE:${name}>)
  get_test_property(${name} ENVIRONMENT environment)
  set_tests_properties(${name}_on_a_bus PROPERTIES TIMEOUT 120 SKIP_RETURN_CODE 77)
  if(environment)
    set_tests_properties(${name}_on_a_bus PROPERTIES ENVIRONMENT "${environment}")
  endif()
endfunction()

# A test program once more, on an X11 display of its own; skipped where the machine has none to give.
function(quorvane_display_test name)
  add_test(NAME ${name}_on_a_display
           COMMAND ${CMAKE_SOURCE_DIR}/cmake/run-isolated
                   ${CMAKE_SOURCE_DIR}/tests/support/on-a-display $<TARGET_FILE:${name}>)
  get_test_property(${name} ENVIRONMENT environment)
  set_tests_properties(${name}_on_a_display PROPERTIES TIMEOUT 120 SKIP_RETURN_CODE 77)
  if(environment)
    set_tests_properties(${name}_on_a_display PROPERTIES ENVIRONMENT "${environment}")
  endif()
endfunction()

# One fuzz target, its seeds in corpus/NAME beside the source. With QUORVANE_FUZZ it is a libFuzzer
# program below fuzz/bin; otherwise a program that replays the corpus, run as a test.
add_custom_target(fuzzers)
function(quorvane_fuzz name)
  quorvane_program(${name} ${ARGN})
  if(QUORVANE_FUZZ)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz/bin)
    add_dependencies(fuzzers ${name})
  else()
    target_sources(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests/fuzz/ReplayCorpus.cpp)
    add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/cmake/run-isolated $<TARGET_FILE:${name}>
                                  ${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name})
  endif()
endfunction()
