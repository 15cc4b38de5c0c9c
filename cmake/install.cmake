# kova_install_rpath(TARGET OWN-DIRECTORY DIRECTORY...): where the installed file looks for its libraries, told from where it
# lies itself, so that an installation can be moved.
function(kova_install_rpath target own)
  set(paths)
  foreach(directory IN LISTS ARGN)
    file(RELATIVE_PATH path /${own} /${directory})
    list(APPEND paths $ORIGIN/${path})
  endforeach()
  list(TRANSFORM paths REPLACE "/$" "")
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "${paths}")
endfunction()

# kova_compressed(RESULT FILE): the file as manuals and documents are installed. Without its date: the same file makes the
# same archive.
function(kova_compressed result file)
  cmake_path(GET file FILENAME name)
  set(archive ${CMAKE_CURRENT_BINARY_DIR}/${name}.gz)
  add_custom_command(OUTPUT ${archive} COMMAND gzip -9nc ${file} > ${archive} DEPENDS ${file} VERBATIM)
  add_custom_target(compressed_${name} ALL DEPENDS ${archive})
  set(${result} ${archive} PARENT_SCOPE)
endfunction()
