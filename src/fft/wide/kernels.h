// SPDX-License-Identifier: MIT
// The wide transforms of one instruction-set level, behind pointers.
#pragma once

#include "fft/plans/chirp_plan.h"
#include "fft/plans/direct_plan.h"
#include "fft/plans/half_plan.h"
#include "fft/plans/lane_plan.h"
#include "fft/plans/mixed_plan.h"
#include "fft/plans/product_plan.h"
#include "fft/plans/real_plan.h"
#include "fft/plans/square_plan.h"

namespace sigpak::kernels {

// Transforms without a plan, in registers, and on the stack where those are too few; null where there is
// none.
template <class T> struct small_fft {
  void (*run[2])(T* x);  // forward, inverse
};
inline constexpr std::int64_t most_small = 256;  // all powers of two up to there, from 4 on
inline constexpr int small_real_sizes = 10;
template <class T> struct small_kernels {
  small_fft<T> complex[most_small + 1];  // by N
  small_fft<T> real[small_real_sizes];   // by log2 N, from 4 points on
};

template <class T> struct fft_kernels {
  int widest_lanes;
  // Either may be in place; the way back of real data changes the spectrum.
  void (*run)(const lane_plan<T>& plan, const T* from, T* to, T* scratch, bool inverse);
  void (*run_real)(const real_plan<T>& plan, const T* from, T* to, T* scratch);
  void (*run_real_inverse)(const real_plan<T>& plan, T* from, T* to, T* scratch);
  // A filter to its bins, in place with room for the lanes behind it, and real data around their circle with
  // it.
  void (*run_filter)(const real_plan<T>& plan, T* x, T* scratch);
  void (*run_circle)(const real_plan<T>& plan, const T* filter, const T* from, T* to, T* scratch);
  // The sweep after the forward transform of half the length, and before the inverse one.
  void (*change_bins)(const half_plan<T>& plan, T* x, bool inverse);
  void (*run_mixed)(const mixed_plan<T>& plan, T* x, T* scratch, bool inverse);
};

template <class T> struct product_kernels {
  int widest_lanes;
  int narrowest_lanes;
  void (*run)(const product_plan<T>& plan, T* x, T* scratch, bool inverse);
  void (*run_square)(const square_plan<T>& plan, T* x, T* scratch, bool inverse);
};

template <class T> struct chirp_kernels {
  int widest_lanes;
  int narrowest_lanes;
  void (*run)(const chirp_plan<T>& plan, T* x, T* scratch, bool inverse);
  void (*run_direct)(const direct_plan<T>& plan, T* x, bool inverse);
};

// From vectors in scratch memory, laid out as the first pass leaves its results, to their transforms in the
// order of the filter: in double for plans of both precisions.
struct chirp_spectra {
  void (*run)(const chirp_plan<double>& plan, double* scratch, double* out);
};

}  // namespace sigpak::kernels
