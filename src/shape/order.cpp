// SPDX-License-Identifier: MIT
// Reversal, dropping of leading points, random permutation.
#include <algorithm>
#include <limits>

#include "core/copy.h"
#include "core/each.h"
#include "core/isa.h"
#include "generate/generate.h"
#include "shape/shape.h"

namespace sigpak {
namespace {

// Swaps `count` points of the front with those before `end`, mirrored. The two runs do not meet.
template <index width, class T> void mirror(T* __restrict front, T* __restrict end, index count) noexcept {
  each<width>(front, count, [=](index point) {
    const index i = point * width;
    for (index part = 0; part < width; ++part) {
      const T x = front[i + part];
      front[i + part] = end[part - width - i];
      end[part - width - i] = x;
    }
  });
}

// Beyond the largest count nothing is left: records hold fewer points.
template <record V> status shift(V* v, std::uint32_t n) noexcept {
  constexpr std::uint32_t most = std::numeric_limits<std::int32_t>::max();
  return copy_run(v, v, static_cast<std::int32_t>(std::min(n, most)), static_cast<std::int32_t>(most));
}

// R. A. Fisher, F. Yates: every point changes places with one drawn from itself and those after it.
template <record V> status shuffle(V* v) noexcept {
  const index points = length(v);
  const index width = sigpak::width(v);
  for (index i = 0; i + 1 < points; ++i) {
    scalar<V>* const x = v->data + i * width;
    const index j = random_integer() % (points - i);
    if (j != 0) std::swap_ranges(x, x + width, x + j * width);
  }
  return ok;
}

}  // namespace

template <record V> status reverse(V* v) noexcept {
  isa::run(scalars(v), [x = v->data, points = length(v), complex = is_complex(v)] {
    if (complex) {
      mirror<2>(x, x + 2 * points, points / 2);
    } else {
      mirror<1>(x, x + points, points / 2);
    }
  });
  return ok;
}

template status reverse(dsp_vec*) noexcept;
template status reverse(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_rev(dsp_vec* v) { return reverse(v); }
int32_t dspfi_rev(dspf_vec* v) { return reverse(v); }

int32_t dspi_shift(dsp_vec* v, uint32_t n) { return shift(v, n); }
int32_t dspfi_shift(dspf_vec* v, uint32_t n) { return shift(v, n); }

int32_t dspi_shuffle(dsp_vec* v) { return shuffle(v); }
int32_t dspfi_shuffle(dspf_vec* v) { return shuffle(v); }
