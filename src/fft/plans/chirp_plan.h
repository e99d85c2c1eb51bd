// SPDX-License-Identifier: MIT
// What the wide chirp transform of one length knows in advance.
//
// With 2 n k = (n + k)^2 - n^2 - k^2 and g[m] = exp(-i pi m^2 / N), the transform is a correlation,
//   X[k] = conj g[k] sum over n of (x[n] conj g[n]) g[n+k]
// (L. I. Bluestein, "A linear filtering approach to the computation of discrete Fourier transform", IEEE
// Trans. Audio Electroacoust. 18 (1970), with the signs of the squares exchanged). It is carried out on a
// circle of 2 K points, K >= N. The even bins of its transforms are K-point transforms of the data, the odd
// ones K-point transforms of the data times exp(-i pi n / K), so that the zeros behind the data never appear;
// on the way back the same factors give the two parts of the result, which are added. The two lie side by
// side as pairs of lanes.
//
// With V pairs of lanes a K-point transform is L = K / V vectors long, n = V i + l; the L-point transforms
// run by decimation in frequency and leave their results in place, the V-point ones follow within groups of V
// neighbouring vectors. The spectrum of g is stored in the order that results, and the way back is the
// transpose of the way there, so that nothing is ever put in order.
//
// Where all this leaves the second cache the circle has 4 K points, 2 K >= N, and is gone round twice with
// half of the memory: first for the bins 4 q + r with r of 0 and 2, then for those with r of 1 and 3. These
// are K-point transforms of (z[n] + (-i)^r z[n+K]) exp(-i pi r n / (2 K)).
#pragma once

#include "fft/plans/pass_plan.h"

namespace sigpak {
class recent_list;
template <class T> class scratch_memory;
}  // namespace sigpak

namespace sigpak::kernels {

inline constexpr int most_rounds = 2;

// `vectors` is L, `lanes` 2 V; the last radix is that of the core. With u rounds the bins of one are 2 u q +
// r, r the number of the round in the even lanes and u more in the odd ones.
template <class T> struct chirp_plan : pass_plan<T> {
  std::int64_t points;  // N
  std::int64_t circle;  // K
  int rounds;
  T scale[2];  // of the results, forward and inverse, with what the filter leaves of 1 / (2 u K)
  T* chirp;    // of one round, vectors of conj g[n] and its product with exp(-i pi n / K), as cosine
               // and sine; of two, conj g[n], whose cosine and sine alternate
  T* turns;    // w_K^(l kb) within the groups of V vectors: cosine and sine alternate
  T* filter[most_rounds];  // vectors of the bins of g, as cosine and sine
  // Of two rounds the twiddles of the first pass are w^(r n), n = V (i + j L / R) + l, taken apart: of its
  // butterflies those of V i, for both r, with those of the outputs; and vectors of the others by j.
  T* entries[most_rounds];
  T* slants[most_rounds];
};

// Scalars of scratch memory.
template <class T> constexpr std::int64_t scratch_of(const chirp_plan<T>& plan) noexcept {
  return 2 * plan.lanes * plan.stride * plan.radix[0];
}

// The cycles of a transform, as the costs of products count them.
template <class T> double chirp_cost(std::int64_t points) noexcept;

// The plan of the current level that is in the list already; a new one, made into it. Null where there is
// none yet, and on failure.
template <class T> const chirp_plan<T>* find_chirp_plan(recent_list& plans, std::int64_t points) noexcept;
template <class T>
const chirp_plan<T>* make_chirp_plan(recent_list& plans, scratch_memory<T>& scratch,
                                     std::int64_t points) noexcept;

}  // namespace sigpak::kernels
