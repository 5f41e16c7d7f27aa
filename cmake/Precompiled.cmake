# SPDX-License-Identifier: MIT
# Three precompiled headers for the whole build, each made once: for widget code, for tests of the
# logic and for tests of the screens. They hold only what nearly every file of their kind includes and nobody here edits.

option(QUORVANE_PRECOMPILED_HEADERS "Share precompiled headers between the targets" ON)

# A precompiled header serves libraries and programs alike only if both are compiled in one code
# model; Qt asks for position-independent code, and -fPIC suits a program just as well as -fPIE.
set(CMAKE_CXX_COMPILE_OPTIONS_PIE -fPIC)

function(quorvane_add_precompiled name)
  file(WRITE ${CMAKE_BINARY_DIR}/${name}.cpp.in "// Carries the precompiled header.\n")
  configure_file(${CMAKE_BINARY_DIR}/${name}.cpp.in ${CMAKE_BINARY_DIR}/${name}.cpp COPYONLY)
  add_library(${name} OBJECT EXCLUDE_FROM_ALL ${CMAKE_BINARY_DIR}/${name}.cpp)
  target_link_libraries(${name} PRIVATE quorvane_options Threads::Threads ${ARGN})
endfunction()

function(quorvane_precompile_widgets target)
  if(NOT QUORVANE_PRECOMPILED_HEADERS)
    return()
  endif()
  if(NOT TARGET quorvane_widgets_pch)
    quorvane_add_precompiled(quorvane_widgets_pch Qt6::Core Qt6::Gui Qt6::Widgets)
    target_precompile_headers(quorvane_widgets_pch PRIVATE
      <QAbstractButton> <QApplication> <QBoxLayout> <QEvent> <QFont> <QFontMetricsF> <QHash>
      <QIcon> <QKeyEvent> <QLabel> <QMouseEvent> <QPaintEvent> <QPainter> <QPainterPath> <QPointer>
      <QProperty> <QScrollArea> <QString> <QStringList> <QTimer> <QWidget>
      <algorithm> <functional> <memory> <optional> <string> <unordered_map> <utility> <vector>)
  endif()
  target_precompile_headers(${target} REUSE_FROM quorvane_widgets_pch)
endfunction()

function(quorvane_precompile_tests target)
  if(NOT QUORVANE_PRECOMPILED_HEADERS)
    return()
  endif()
  if(NOT TARGET quorvane_tests_pch)
    quorvane_add_precompiled(quorvane_tests_pch Qt6::Core GTest::gtest GTest::gmock)
    target_precompile_headers(quorvane_tests_pch PRIVATE
      <gmock/gmock.h> <gtest/gtest.h> <QDateTime> <QString>
      <algorithm> <atomic> <functional> <memory> <string> <thread> <vector>)
  endif()
  target_precompile_headers(${target} REUSE_FROM quorvane_tests_pch)
endfunction()

function(quorvane_precompile_gui_tests target)
  if(NOT QUORVANE_PRECOMPILED_HEADERS)
    return()
  endif()
  if(NOT TARGET quorvane_gui_tests_pch)
    quorvane_add_precompiled(quorvane_gui_tests_pch
      Qt6::Core Qt6::Gui Qt6::Widgets Qt6::Test GTest::gtest GTest::gmock)
    target_precompile_headers(quorvane_gui_tests_pch PRIVATE
      <gmock/gmock.h> <gtest/gtest.h>
      <QAbstractButton> <QAccessible> <QAction> <QApplication> <QDateTime> <QEvent> <QImage> <QLabel>
      <QLineEdit> <QMenu> <QPainter> <QPointer> <QProperty> <QScrollBar> <QSignalSpy> <QString>
      <QTest> <QTimer> <QWidget>
      <algorithm> <atomic> <functional> <map> <memory> <optional> <set> <string> <thread> <utility>
      <vector>)
  endif()
  target_precompile_headers(${target} REUSE_FROM quorvane_gui_tests_pch)
endfunction()
