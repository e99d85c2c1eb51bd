/* SPDX-License-Identifier: MIT */
/* The header before <complex.h>, in C99. */
#include "sigpak.h"

#include <complex.h>

int main(void) {
  const dsp_vec v = {1.0, 0, 0, 0, 0, 0};
  return !(sizeof v == 32 && sizeof(dspf_vec) == 32 && v.delta == 1.0 && dsp_version() == DSP_VERSION);
}
