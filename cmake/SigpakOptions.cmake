# SPDX-License-Identifier: MIT
# Compiler options shared by everything that is built here.

# Warnings for our own code; consumers of the library never see them.
add_library(sigpak_warnings INTERFACE)
target_compile_options(sigpak_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wdouble-promotion -Wconversion
  $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
  $<$<BOOL:${SIGPAK_WERROR}>:-Werror>)

# The library's own dialect. Every result is defined to the last bit, so no contraction; guarded selects vectorise
# without errno and traps.
add_library(sigpak_dialect INTERFACE)
target_compile_options(sigpak_dialect INTERFACE
  -ffp-contract=off -fno-math-errno -fno-trapping-math -fno-exceptions -fno-rtti)
