# SPDX-License-Identifier: MIT
# The objects once more, under sanitizers, for suites that watch them: a library NAME to link. The level units that are
# named serve as they are, without.
function(sigpak_watched name sanitizers units)
  get_target_property(sources sigpak_objects SOURCES)
  list(JOIN units "|" units)
  list(FILTER sources EXCLUDE REGEX "/(${units})[.]cpp$")

  add_library(${name}_sanitizers INTERFACE)
  target_compile_options(${name}_sanitizers INTERFACE
    -O1 -g1 -fsanitize=${sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(${name}_sanitizers INTERFACE -fsanitize=${sanitizers})

  add_library(${name}_objects OBJECT ${sources})
  target_link_libraries(${name}_objects PUBLIC sigpak_sources PRIVATE sigpak_dialect ${name}_sanitizers)
  add_library(${name} INTERFACE)
  target_sources(${name} INTERFACE $<TARGET_OBJECTS:${name}_objects>
    "$<FILTER:$<TARGET_OBJECTS:sigpak_objects>,INCLUDE,/(${units})[.]cpp[.]o$>")
  target_link_libraries(${name} INTERFACE ${name}_sanitizers)
endfunction()
