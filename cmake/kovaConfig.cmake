# Its real place, for the targets are found from there: /lib may be a link to /usr/lib.
file(REAL_PATH ${CMAKE_CURRENT_LIST_DIR} kova_directory)
include(${kova_directory}/kovaTargets.cmake)
