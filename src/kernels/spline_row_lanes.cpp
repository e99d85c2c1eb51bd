// SPDX-License-Identifier: MIT
// Sums of samples and cubic rows: a vector of each row is loaded once for several outputs, and what is left
// of the rows behind the last whole vector is loaded under a mask, so that no sample beyond them is read.
#include "kernels/spline_rows.h"

#include "vectors/lanes.h"
#include "vectors/levels.h"
#include "vectors/sum.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

constexpr int powers = 4;

// G outputs, their sums for the four powers of v in registers.
template <class P, int G, class T>
SIGPAK_INLINE void sum_together(const kernels::cubic_rows<T>& rows, const T* const* x, const T* v, T* out) {
  constexpr int W = P::width;
  P sums[G][powers];
  unroll<G * powers>([&](auto i) SIGPAK_LAMBDA { sums[i / powers][i % powers] = splat<P>(T(0)); });
  const auto add = [&](const P(&row)[powers], auto load_x) SIGPAK_LAMBDA {
    unroll<G>([&](auto g) SIGPAK_LAMBDA {
      const P samples = load_x(x[g]);
      unroll<powers>([&](auto p) SIGPAK_LAMBDA { sums[g][p] = fma(row[p], samples, sums[g][p]); });
    });
  };
  P row[powers];
  index i = 0;
  for (; i + W <= rows.size; i += W) {
    unroll<powers>([&](auto p) SIGPAK_LAMBDA { row[p] = load<P>(rows.at + p * rows.stride + i); });
    add(row, [i](const T* from) SIGPAK_LAMBDA { return load<P>(from + i); });
  }
  const index left = rows.size - i;
  if (left > 0) {
    unroll<powers>([&](auto p)
                       SIGPAK_LAMBDA { row[p] = load_first(rows.at + p * rows.stride + i, left, P{}); });
    add(row, [i, left](const T* from) SIGPAK_LAMBDA { return load_first(from + i, left, P{}); });
  }
  unroll<G>([&](auto g) SIGPAK_LAMBDA {
    const P at = splat<P>(v[g]);
    const P high = fma(at, sums[g][3], sums[g][2]);
    out[g] = sum_of_lanes(fma(at, fma(at, high, sums[g][1]), sums[g][0]));
  });
}

template <class P, int G, class T = typename P::scalar>
void sum(const kernels::cubic_rows<T>& rows, const T* const* x, const T* v, index outputs, T* out) {
  index k = 0;
  for (; k + G <= outputs; k += G) sum_together<P, G>(rows, x + k, v + k, out + k);
  for (; k < outputs; ++k) sum_together<P, 1>(rows, x + k, v + k, out + k);
}

// As many outputs as the registers hold.
constexpr int together = widest<double>::width / 2;

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::cubic_table<double>) = {
    SIGPAK_LEVEL::sum<SIGPAK_LEVEL::widest<double>, SIGPAK_LEVEL::together>};
SIGPAK_LEVEL_TABLE(kernels::cubic_table<float>) = {
    SIGPAK_LEVEL::sum<SIGPAK_LEVEL::widest<float>, SIGPAK_LEVEL::together>};

}  // namespace sigpak
