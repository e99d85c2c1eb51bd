// Rotation by half the length.
#include <algorithm>

#include "shape/shape.h"

namespace sigpak {
namespace {

// Point `first` becomes the first one.
template <record V> status rotate(V* v, index first) noexcept {
  std::rotate(v->data, v->data + first * width(v), v->data + scalars(v));
  return ok;
}

}  // namespace

template <record V> status rotate_right_half(V* v) noexcept { return rotate(v, (length(v) + 1) / 2); }
template <record V> status rotate_left_half(V* v) noexcept { return rotate(v, length(v) / 2); }

template status rotate_right_half(dsp_vec*) noexcept;
template status rotate_right_half(dspf_vec*) noexcept;
template status rotate_left_half(dsp_vec*) noexcept;
template status rotate_left_half(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_swap_halves(dsp_vec* v) { return rotate_right_half(v); }
int32_t dspfi_swap_halves(dspf_vec* v) { return rotate_right_half(v); }

int32_t dspi_swap_halves2(dsp_vec* v) { return rotate_left_half(v); }
int32_t dspfi_swap_halves2(dspf_vec* v) { return rotate_left_half(v); }
