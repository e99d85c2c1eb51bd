// What the wide transform of a length without large prime factors knows in advance: N = A B points by A-point
// transforms of the columns and B-point transforms of the rows.
#pragma once

#include "fft/plans/pass_plan.h"

namespace sigpak::kernels {

template <class T> struct mixed_plan {
  std::ptrdiff_t points;  // N
  int lanes;
  T scale;               // of the forward transform
  pass_plan<T> columns;  // A vectors
  pass_plan<T> rows;     // B vectors
  std::uint32_t* place;  // of every output of the transform of a column
  std::uint32_t*
      result;   // by place of a butterfly of the last pass over a row: the number of its first output
  T* twiddles;  // vectors of w_N^(n2 k1), k1 within groups of n2
};

// Whether there is a plan for the length, with `widest` lanes or half of them; the one that is there already;
// a new one. Null where there is none yet, and on failure. All but the largest take 64 MiB at most: those of
// the lengths used last stay, and each until the next is made.
template <class T> bool has_mixed_plan(std::ptrdiff_t points, int widest) noexcept;
template <class T> const mixed_plan<T>* find_mixed_plan(std::ptrdiff_t points, int widest) noexcept;
template <class T> const mixed_plan<T>* make_mixed_plan(std::ptrdiff_t points, int widest) noexcept;
template <class T> void release_mixed_plans() noexcept;

}  // namespace sigpak::kernels
