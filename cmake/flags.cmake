# kova_warnings: what every target is compiled with. kova_flags adds the sanitizers; only the path redirection,
# which is preloaded into foreign programs, does without them.
add_library(kova_warnings INTERFACE)
target_compile_options(kova_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
  $<$<BOOL:${KOVA_WERROR}>:-Werror>
  # No path of the build machine in an object.
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
target_include_directories(kova_warnings INTERFACE ${PROJECT_SOURCE_DIR})

add_library(kova_flags INTERFACE)
target_link_libraries(kova_flags INTERFACE kova_warnings)
if(KOVA_SANITIZE)
  set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_compile_options(kova_flags INTERFACE ${sanitizers})
  target_link_options(kova_flags INTERFACE ${sanitizers})
endif()
