# SPDX-License-Identifier: MIT
# Removes the files of the last installation from the build tree in which this runs.
set(manifest install_manifest.txt)
if(NOT EXISTS ${CMAKE_CURRENT_BINARY_DIR}/${manifest})
  message(FATAL_ERROR "nothing has been installed from here: there is no ${manifest}")
endif()
file(STRINGS ${manifest} installed)
foreach(name IN LISTS installed)
  message(STATUS "Removing $ENV{DESTDIR}${name}")
  file(REMOVE "$ENV{DESTDIR}${name}")
endforeach()
file(REMOVE ${manifest})
