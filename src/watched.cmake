# SPDX-License-Identifier: MIT
# The objects once more, under sanitizers, for suites that watch them: a library NAME to link. Sources whose path without
# its ending matches UNWATCHED serve as they are, without; what is weak in both is that of the watched, which come first.
# -Og takes the compiler little more than half the time of -O1.
function(sigpak_watched name sanitizers unwatched)
  get_target_property(sources sigpak_objects SOURCES)
  list(FILTER sources EXCLUDE REGEX "/(${unwatched})[.]cpp$")

  add_library(${name}_sanitizers INTERFACE)
  target_compile_options(${name}_sanitizers INTERFACE
    -Og -g1 -fsanitize=${sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(${name}_sanitizers INTERFACE -fsanitize=${sanitizers})

  add_library(${name}_objects OBJECT ${sources})
  target_link_libraries(${name}_objects PUBLIC sigpak_sources PRIVATE sigpak_dialect ${name}_sanitizers)
  target_compile_definitions(${name}_objects PRIVATE SIGPAK_LOOPS_ONCE)
  if(NOT CMAKE_CXX_COMPILER_LAUNCHER MATCHES "ccache")
    target_precompile_headers(${name}_objects PRIVATE <algorithm> <bit> <cmath> <cstdint> <limits>)
  endif()
  add_library(${name} INTERFACE)
  target_sources(${name} INTERFACE $<TARGET_OBJECTS:${name}_objects>
    "$<FILTER:$<TARGET_OBJECTS:sigpak_objects>,INCLUDE,/(${unwatched})[.]cpp[.]o$>")
  target_link_libraries(${name} INTERFACE ${name}_sanitizers)
endfunction()
