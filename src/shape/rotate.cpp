// SPDX-License-Identifier: MIT
// Rotation by half the length.
#include <algorithm>

#include "core/each.h"
#include "core/isa.h"
#include "shape/shape.h"

namespace sigpak {
namespace {

// A record of an odd number of points is two halves with a middle point between; of an even number, two
// halves that change places. Either way every value lands on one that has just moved on, so one pass does,
// from the back or from the front. `middle` is the width of the middle point in scalars: 0, 1 or 2.
struct to_the_left {
  template <index middle, class T> static void rotate(T* __restrict front, index half) noexcept {
    T* __restrict back = front + half + middle;
    T held[2];
    std::copy_n(front + half, middle, held);
    for (index i = half - 1; i >= 0; --i) {
      const T x = front[i];
      front[i + middle] = back[i];
      back[i] = x;
    }
    std::copy_n(held, middle, front);
  }
};

struct to_the_right {
  template <index middle, class T> static void rotate(T* __restrict front, index half) noexcept {
    T* __restrict back = front + half + middle;
    T held[2];
    std::copy_n(front, middle, held);
    each(front, half, [=](index i) {
      const T x = back[i];
      back[i] = front[i + middle];
      front[i] = x;
    });
    std::copy_n(held, middle, front + half);
  }
};

template <class Direction, record V> status rotate(V* v) noexcept {
  isa::run(scalars(v), [x = v->data, half = length(v) / 2 * width(v), middle = length(v) % 2 * width(v)] {
    switch (middle) {
      case 0:
        return to_the_right::rotate<0>(x, half);  // either way the halves change places
      case 1:
        return Direction::template rotate<1>(x, half);
      default:
        return Direction::template rotate<2>(x, half);
    }
  });
  return ok;
}

}  // namespace

template <record V> status rotate_right_half(V* v) noexcept { return rotate<to_the_right>(v); }
template <record V> status rotate_left_half(V* v) noexcept { return rotate<to_the_left>(v); }

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
