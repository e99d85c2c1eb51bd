/* SPDX-License-Identifier: MIT */
/* The header before <complex.h>, in C99, and the layout that programs have been compiled with. */
#include "sigpak.h"

#include <complex.h>
#include <stddef.h>

#undef complex
#define HAS_LAYOUT(vec)                                                                         \
  (sizeof(vec) == 32 && offsetof(vec, delta) == 0 && offsetof(vec, data) == 8 &&                \
   offsetof(vec, alloc) == 16 && offsetof(vec, points) == 20 && offsetof(vec, complex) == 24 && \
   offsetof(vec, reserved) == 28)

int main(void) {
  const dsp_vec v = {1.0, 0, 0, 0, 0, 0};
  return !(HAS_LAYOUT(dsp_vec) && HAS_LAYOUT(dspf_vec) && v.delta == 1.0 && dsp_version() == DSP_VERSION);
}
