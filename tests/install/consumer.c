/* SPDX-License-Identifier: MIT */
/* The least that a user of the installed library does. */
#include <sigpak.h>

int main(void) {
  dsp_vec v;
  dsp_init(&v);
  v.points = 8;
  if (dsp_alloc(&v) != 0) return 1;
  for (int i = 0; i < 8; ++i) v.data[i] = i;
  const int failed = dspi_scale(&v, 2.0) != 0 || v.data[7] != 14.0;
  dsp_destroy(&v);
  return failed;
}
