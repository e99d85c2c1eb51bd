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
#pragma once

#include "fft/plans/pass_plan.h"

namespace sigpak::kernels {

// Odd lengths up to this one are transformed by the definition instead, which is more accurate and as fast.
template <class T> inline constexpr int most_direct_points = sizeof(T) == sizeof(double) ? 61 : 37;

template <class T> struct chirp_plan {
  std::ptrdiff_t points;  // N
  fft_plan<T> over;       // of K points: `vectors` is L, `lanes` 2 V; the last radix is that of the core
  T scale[2];             // of the results, forward and inverse, with what the filter leaves of 1 / (2 K)
  const T* chirp;         // vectors of conj g[n] and its product with exp(-i pi n / K), as cosine and sine
  const T* turns;         // w_K^(l kb) within the groups of V vectors: cosine and sine alternate
  const T* filter;        // vectors of the even and odd bins of g, as cosine and sine
};

template <class T> struct chirp_kernels {
  int widest_lanes;
  int narrowest_lanes;
  void (*run)(const chirp_plan<T>& plan, T* x, T* scratch, bool inverse);
  // From vectors in scratch memory, laid out as the first pass leaves its results, to their transforms in the
  // order of the filter.
  void (*spectrum)(const chirp_plan<T>& plan, T* scratch, T* out);
  // The table holds, by vectors of k from 1 on and then by j, the cosines and sines of 2 pi j k / N.
  void (*run_direct)(const T* table, std::ptrdiff_t points, T* x, bool inverse);
};

}  // namespace sigpak::kernels
