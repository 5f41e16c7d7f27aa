# SPDX-License-Identifier: MIT
# Compiler cache, linker, sanitizers and link-time facts shared by every target.

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()

# The cache also serves precompiled headers, and one preset from what another has compiled.
find_program(QUORVANE_CCACHE ccache)
if(QUORVANE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_NOHASHDIR=1
      ${QUORVANE_CCACHE})
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-fpch-preprocess)
endif()

find_program(QUORVANE_LLD ld.lld)
if(QUORVANE_LLD)
  add_link_options(-fuse-ld=lld)
endif()

# One line of debug facts a frame is enough for a stack trace and halves the size of the objects.
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1 -DNDEBUG")
if(QUORVANE_ASSERTIONS)
  set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1 -D_GLIBCXX_ASSERTIONS -DQT_FORCE_ASSERTS")
endif()

if(QUORVANE_SANITIZE)
  add_compile_options(-fsanitize=${QUORVANE_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${QUORVANE_SANITIZE})
  if(QUORVANE_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()
endif()
if(QUORVANE_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
