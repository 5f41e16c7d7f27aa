# SPDX-License-Identifier: MIT
# quorvane_library(NAME [CORE|GUI] SOURCES ... [LINK ...] [PRIVATE_LINK ...])
#
# One target for each folder of src/. A CORE target sees the standard library and QtCore's value
# types alone: a fence directory placed before Qt's own shadows the umbrella headers of the GUI
# modules, so that a wrong include does not compile. Each target puts only its own header folder on
# the include path; a folder that is not linked cannot be included from.

set(QUORVANE_FENCE ${CMAKE_BINARY_DIR}/fence)
foreach(module Gui Widgets Svg DBus Network)
  file(WRITE ${QUORVANE_FENCE}/Qt${module}/Qt${module}
       "#error \"A logic target must not include Qt${module}.\"\n")
endforeach()
foreach(header QtGui/QPainter QtGui/QColor QtGui/QImage QtGui/QPixmap QtGui/QIcon QtGui/QFont
        QtWidgets/QWidget QtWidgets/QApplication QPainter QColor QImage QPixmap QIcon QFont QWidget
        QApplication)
  file(WRITE ${QUORVANE_FENCE}/${header} "#error \"A logic target must not include ${header}.\"\n")
endforeach()

add_library(quorvane_options INTERFACE)
target_compile_options(quorvane_options INTERFACE
  -Wall -Wextra -Wold-style-cast -Wcast-qual -Wnon-virtual-dtor -Woverloaded-virtual -Wconversion)
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

function(quorvane_library name)
  cmake_parse_arguments(ARG "CORE;GUI" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARG_LINK} Threads::Threads
                                PRIVATE quorvane_options ${ARG_PRIVATE_LINK})
  if(ARG_CORE)
    target_include_directories(${name} BEFORE PRIVATE ${QUORVANE_FENCE})
    target_link_libraries(${name} PUBLIC Qt6::Core)
  else()
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(${name} PUBLIC Qt6::Core Qt6::Gui Qt6::Widgets)
  endif()
endfunction()

# quorvane_test(NAME SOURCES ... LINK ...): one GoogleTest program, registered with CTest under its
# name. Every program gets a home of its own, so that no test can reach the user's settings or Trash.
function(quorvane_test name)
  cmake_parse_arguments(ARG "GUI" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE quorvane_options ${ARG_LINK} GTest::gtest GTest::gmock)
  if(ARG_GUI)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  else()
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/cmake/run-isolated $<TARGET_FILE:${name}>)
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()
