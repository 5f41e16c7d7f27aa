# SPDX-License-Identifier: MIT
# Where the program and what belongs to it are installed, and the package made of that.

set(QUORVANE_ID io.github.quorvane.Quorvane)
# An installation needs the program, not the tests.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

if(NOT TARGET quorvane)
  return()
endif()

if(APPLE)
  set_target_properties(quorvane PROPERTIES
    MACOSX_BUNDLE ON
    MACOSX_BUNDLE_INFO_PLIST ${CMAKE_SOURCE_DIR}/packaging/macos/Info.plist.in
    MACOSX_BUNDLE_GUI_IDENTIFIER ${QUORVANE_ID}
    MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION}
    MACOSX_BUNDLE_BUNDLE_VERSION 1)
  install(TARGETS quorvane BUNDLE DESTINATION .)
  set(CPACK_GENERATOR DragNDrop)
else()
  set(CMAKE_INSTALL_DOCDIR share/doc/quorvane)
  include(GNUInstallDirs)
  set(linux ${CMAKE_SOURCE_DIR}/packaging/linux)
  install(TARGETS quorvane RUNTIME)
  install(FILES ${linux}/${QUORVANE_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${linux}/${QUORVANE_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
  install(FILES ${linux}/${QUORVANE_ID}.svg
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
  install(FILES ${linux}/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
  # Compressed without a name and a time, so that two builds give the same package.
  find_program(QUORVANE_GZIP gzip REQUIRED)
  foreach(page quorvane.1 changelog)
    add_custom_command(OUTPUT ${page}.gz
      COMMAND sh -c "\"$0\" -9nc \"$1\" >\"$2\"" ${QUORVANE_GZIP} ${linux}/${page} ${page}.gz
      DEPENDS ${linux}/${page} VERBATIM)
  endforeach()
  add_custom_target(quorvane_pages ALL DEPENDS quorvane.1.gz changelog.gz)
  add_dependencies(quorvane quorvane_pages)
  install(FILES ${CMAKE_BINARY_DIR}/quorvane.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES ${CMAKE_BINARY_DIR}/changelog.gz DESTINATION ${CMAKE_INSTALL_DOCDIR})
  set(CPACK_GENERATOR DEB)
endif()

set(CPACK_PACKAGE_NAME quorvane)
set(CPACK_PACKAGE_VENDOR "The Quorvane authors")
set(CPACK_PACKAGE_CONTACT "The Quorvane authors <maintainers@quorvane.github.io>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "desktop disk-space analyser")
set(CPACK_PACKAGE_DESCRIPTION
    "Quorvane walks a folder or the whole disk with a few workers and draws what
it found as a treemap, so that one sees at a glance what is taking up space.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded at run time, so that no library dependency tells of it.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://quorvane.github.io")
# The typeface, and previews of WebP and TIFF pictures. What decodes HEIC, PDF, sound and film comes
# with the libraries that we link. A window on Wayland without a detour over X11. The Trash that the
# desktop shows: gvfs lists and empties what GIO moves there, its daemons on every volume. The portal
# that asks for a folder and tells light from dark. The model of the letters on screenshots.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "fonts-inter, gvfs, gvfs-daemons, qt6-image-formats-plugins, qt6-wayland, tesseract-ocr-eng, \
xdg-desktop-portal")
include(CPack)
