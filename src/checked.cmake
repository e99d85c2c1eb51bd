# The objects a second time, under the sanitizers, for a second run of the suites. Units that are left out of it serve
# both builds as they are.
function(sigpak_checked_objects)
  get_target_property(sources sigpak_objects SOURCES)
  get_target_property(unchecked sigpak_objects SIGPAK_UNCHECKED_UNITS)
  list(JOIN unchecked "|" names)
  list(FILTER sources EXCLUDE REGEX "/(${names})[.]cpp$")

  add_library(sigpak_checked_objects OBJECT ${sources})
  target_link_libraries(sigpak_checked_objects PUBLIC sigpak_sources PRIVATE sigpak_dialect sigpak_sanitizers)
  add_library(sigpak_checked INTERFACE)
  target_sources(sigpak_checked INTERFACE $<TARGET_OBJECTS:sigpak_checked_objects>
    "$<FILTER:$<TARGET_OBJECTS:sigpak_objects>,INCLUDE,/(${names})[.]cpp[.]o$>")
  target_link_libraries(sigpak_checked INTERFACE sigpak_sanitizers m)
endfunction()
