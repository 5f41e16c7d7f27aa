# SPDX-License-Identifier: MIT
# The fence of the logic: QUORVANE_FENCE is a folder that shadows every header of every Qt module but
# QtCore with an #error. Placed before Qt's own folder it makes <QtGui/QPainter> fail to compile, which
# on a system that keeps all modules below one folder would otherwise be found.

# All presets share one, so that the compiler cache serves one preset from what another compiled.
set(QUORVANE_FENCE ${CMAKE_BINARY_DIR}/fence)
cmake_path(GET CMAKE_BINARY_DIR PARENT_PATH parent)
if(parent STREQUAL "${CMAKE_SOURCE_DIR}/build")
  set(QUORVANE_FENCE ${parent}/fence)
endif()

function(quorvane_write_fence)
  get_target_property(folders Qt6::Core INTERFACE_INCLUDE_DIRECTORIES)
  set(headers)
  foreach(folder IN LISTS folders)
    file(GLOB found RELATIVE ${folder} ${folder}/Qt*/Q* ${folder}/Qt*/q*.h)
    list(APPEND headers ${found})
  endforeach()
  list(FILTER headers EXCLUDE REGEX "^QtCore/")
  # A system that installs no GUI module has nothing to shadow: the include fails there by itself.
  list(APPEND headers QtGui/QPainter)
  list(REMOVE_DUPLICATES headers)
  foreach(header IN LISTS headers)
    if(NOT EXISTS ${QUORVANE_FENCE}/${header})
      file(WRITE ${QUORVANE_FENCE}/${header}
           "#error \"The logic may not include ${header}: of Qt it sees QtCore alone.\"\n")
    endif()
  endforeach()
endfunction()

quorvane_write_fence()
