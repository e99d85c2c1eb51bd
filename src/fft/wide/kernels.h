// The wide transforms of one instruction-set level, behind pointers.
#pragma once

#include "fft/plans/pass_plan.h"

namespace sigpak::kernels {

inline constexpr int small_sizes = 7;  // log2 N below this may have a transform without a plan
inline constexpr int small_real_sizes = 6;

template <class T> struct small_fft {
  void (*run[2])(T* x);  // forward, inverse; null where there is none
};

template <class T> struct fft_kernels {
  int widest_lanes;
  small_fft<T> small[small_sizes];  // by log2 N
  small_fft<T> small_real[small_real_sizes];
  void (*run)(const fft_plan<T>& plan, T* x, T* scratch, bool inverse);
  void (*run_real)(const fft_plan<T>& plan, T* x, T* scratch, bool inverse);
  void (*run_mixed)(const mixed_plan<T>& plan, T* x, T* scratch, bool inverse);
};

}  // namespace sigpak::kernels
