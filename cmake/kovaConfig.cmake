include(${CMAKE_CURRENT_LIST_DIR}/kovaTargets.cmake)
