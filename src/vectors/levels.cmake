# SPDX-License-Identifier: MIT
# Kernels that need vector width, shuffles or fused multiply-add by name: one source, compiled once per
# instruction-set level. The source finds its level in SIGPAK_LEVEL, the namespace that holds all of it, the
# bytes of a vector in SIGPAK_VECTOR_BYTES and the header of its vectors in SIGPAK_VECTORS; src/core/isa.h decides at
# run time which level is called. Such a source is named NAME_lanes.cpp.

set(wide_levels)
if(SIGPAK_WIDE_LEVELS)
  set(wide_levels avx2 avx512)
endif()
set(baseline_bytes 16)
set(baseline_vectors portable_128.h)
set(baseline_options)
set(avx2_bytes 32)
set(avx2_vectors x86_256.h)
set(avx2_options -mavx2 -mfma)
set(avx512_bytes 64)
set(avx512_vectors x86_512.h)
set(avx512_options
  -mavx512f -mavx512dq -mavx512bw -mavx512vl -mavx512vbmi2 -mfma -mprefer-vector-width=512)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # g++ 12 takes the deliberately undefined source of its own 512-bit intrinsics for a mistake of the caller.
  list(APPEND avx512_options -Wno-uninitialized -Wno-maybe-uninitialized)
endif()

# Vectors know no undefined operation, and the checks of every unrolled index take minutes to compile; an access out of
# bounds is the address sanitizer's. What these units hold on the stack they use in its scope: watching that takes two
# thirds of the compiler's time.
set(level_sanitizers -fno-sanitize=undefined -fno-sanitize-address-use-after-scope)

# What -Og leaves out clears the upper halves of the registers, without which the callers' narrow code becomes ten times
# as slow.
set(level_epilogues -fexpensive-optimizations)

set_property(TARGET sigpak_objects PROPERTY SIGPAK_LEVELS baseline ${wide_levels})

# Adds NAME.cpp to the library once per wide level, and with AT_BASELINE for the baseline too, as NAME_LEVEL. The
# library's property SIGPAK_LEVEL_UNITS names all of them, and SIGPAK_UNCHECKED_UNITS those marked UNCHECKED, which the
# sanitizers leave out.
function(sigpak_kernel name)
  cmake_parse_arguments(PARSE_ARGV 1 kernel "AT_BASELINE;UNCHECKED" "" "")
  set(levels ${wide_levels})
  if(kernel_AT_BASELINE)
    list(PREPEND levels baseline)
  endif()
  file(RELATIVE_PATH source ${PROJECT_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR}/${name}.cpp)
  foreach(level ${levels})
    set(level_bytes ${${level}_bytes})
    set(level_vectors ${${level}_vectors})
    set(unit ${CMAKE_CURRENT_BINARY_DIR}/${name}_${level}.cpp)
    file(CONFIGURE OUTPUT ${unit} @ONLY CONTENT [[
#define SIGPAK_LEVEL @level@
#define SIGPAK_VECTOR_BYTES @level_bytes@
#define SIGPAK_VECTORS "vectors/@level_vectors@"
#include "@source@"
]])
    target_sources(sigpak_objects PRIVATE ${unit})
    set_property(TARGET sigpak_objects APPEND PROPERTY SIGPAK_LEVEL_UNITS ${name}_${level})
    if(kernel_UNCHECKED)
      set_property(TARGET sigpak_objects APPEND PROPERTY SIGPAK_UNCHECKED_UNITS ${name}_${level})
    endif()
    set_source_files_properties(${unit} TARGET_DIRECTORY sigpak_objects PROPERTIES
      COMPILE_OPTIONS "${${level}_options};${level_sanitizers};${level_epilogues}"
      SKIP_PRECOMPILE_HEADERS ON)
  endforeach()
endfunction()
