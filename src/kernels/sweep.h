// SPDX-License-Identifier: MIT
// Blocks of a sinusoid side by side at the wide levels, one lane each.
#pragma once

#include <cstdint>

namespace sigpak::kernels {

inline constexpr int most_sweep_lanes = 16;
inline constexpr std::int64_t sweep_points = 256;

// re + i im of every lane is its first point; c + i s turns it to the next. They are read once.
struct sweep_start {
  double c;
  double s;
  double amplitude;
  double re[most_sweep_lanes] = {};
  double im[most_sweep_lanes] = {};
  std::int64_t ahead = 0;  // scalars from where a lane writes to the lines that are called for

  // Called as often as `meanwhiles` in a block: stores on their way to memory leave time for work.
  void (*meanwhile)(void* work) = nullptr;
  void* work = nullptr;
};
inline constexpr int meanwhiles = 4;

// Writes sweep_points points from x[lane] on, in eight lanes or in sixteen.
template <class T> using sweep = void (*)(const sweep_start& start, T* const* x, int lanes);

template <class T> struct sweep_table {
  sweep<T> cosine;                // x = re
  sweep<T> exponential;           // x = re, im
  sweep<T> add_cosine;            // x += amplitude re
  sweep<T> add_cosine_to_points;  // the same to the real part of every point
  sweep<T> add_exponential;       // x += amplitude (re, im)
};

}  // namespace sigpak::kernels
