// SPDX-License-Identifier: MIT
// A window of the catalogue applied to a record.
#include "core/storage.h"
#include "shape/shape.h"
#include "windows/catalogue.h"
#include "windows/ring.h"
#include "windows/windows.h"

namespace sigpak {
namespace {

template <record V> status rotate_if(bool wanted, V* v) noexcept { return wanted ? rotate_left_half(v) : ok; }

// Nothing to multiply, but a window that does not exist is refused all the same.
template <record V> status apply_to_empty(int window, int flags, double width) noexcept {
  temporary<V> none;
  return generate_window<V>(&none, window, flags, width);
}

template <record V> status apply(V* v, int window, int flags, double width) noexcept {
  if (mode_of(flags) == refused_mode) return failed;
  const bool uniform = window == DSP_WINDOW_UNIFORM;
  const bool rotated = uniform ? has(flags, DSP_WINDOW_FLAG_ROTATE) : !has(flags, DSP_WINDOW_FLAG_NO_ROTATE);
  if (uniform && !has(flags, DSP_WINDOW_FLAG_WIDTH)) return rotate_if(rotated, v);
  if (length(v) == 0) return apply_to_empty<V>(window, flags, width);
  if (multiply_by_window(v, window, flags, width) != ok) return failed;
  return rotate_if(rotated, v);
}

template <record V> status apply_whole(V* v, int window, int flags) noexcept {
  return has(flags, DSP_WINDOW_FLAG_WIDTH) ? failed : apply(v, window, flags, 0);
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_window(dsp_vec* v, int32_t window, int32_t flags) { return apply_whole(v, window, flags); }
int32_t dspfi_window(dspf_vec* v, int32_t window, int32_t flags) { return apply_whole(v, window, flags); }

int32_t dspi_window2(dsp_vec* v, int32_t window, int32_t flags, double width) {
  return apply(v, window, flags, width);
}
int32_t dspfi_window2(dspf_vec* v, int32_t window, int32_t flags, float width) {
  return apply(v, window, flags, static_cast<double>(width));
}
