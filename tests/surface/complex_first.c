/* SPDX-License-Identifier: MIT */
/* <complex.h> first: its macro must not eat the field of that name. */
#include <complex.h>
#include "sigpak.h"

#include <stddef.h>

#ifndef complex
#error "the header dropped a macro of its user"
#endif
#undef complex

int main(void) {
  dsp_vec v;
  dsp_init(&v);
  v.complex = 1;
  v.points = 3;
  const int sized = dsp_alloc(&v) == 0 && v.alloc == 6;
  dsp_destroy(&v);
  return !(sized && sizeof(dsp_vec) == 32 && sizeof(dspf_vec) == 32 && offsetof(dsp_vec, complex) == 24);
}
