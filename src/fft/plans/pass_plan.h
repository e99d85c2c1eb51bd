// What a wide transform of one length knows in advance; built once, read by the kernels of every level.
//
// With W lanes and M = N / W, n = W i + l and k = kb + M k':
//   X[k] = sum over l of w_W^(l k') w_N^(l kb) Y_l[kb],  Y_l = the M-point transform over i of lane l,
// w_R = exp(-2 pi i / R). The M-point transforms run side by side in the lanes, by decimation in frequency.
#pragma once

#include <cstddef>
#include <cstdint>

namespace sigpak::kernels {

inline constexpr int most_passes = 16;
inline constexpr int most_lanes = 16;

template <class T> struct fft_plan {
  std::ptrdiff_t points;   // N
  std::ptrdiff_t vectors;  // M
  int lanes;               // W
  T scale;                 // of the forward transform, applied to its results: the sums of tiny data keep
                           // every digit that the results have room for
  int passes;              // over the lanes; the first reads the data, the last transform is not counted
  int radix[most_passes];  // their product is M
  std::ptrdiff_t block[most_passes];  // vectors in one block of the pass
  std::ptrdiff_t stride;           // vectors from one block of the second pass to the next, padding included
  const T* twiddles[most_passes];  // broadcast twiddles of the passes; the last of several has none
  int group;                       // kb that the last transform takes at once: W / 2, of real data W
  const T* last;   // vectors of twiddles w_N^(l kb) of the last transform: place by place, of real data group
                   // by group, and with steps only for the first output of each butterfly of the last pass
  const T* steps;  // vectors of twiddles from that output to the others, or null
  bool collected;  // the last transform collects its output
  bool streamed;   // and writes it past the caches
  std::ptrdiff_t offset[most_lanes];  // of the vector of kb + p from that of kb, kb the first of a group
  const std::uint32_t* start;         // place of the vector of kb, the first of a group

  // Of real transforms only, where the lanes hold M-point transforms of real data, packed into M / 2 vectors:
  const T* unpack;              // broadcast w_M^k, k < M / 2
  const std::uint32_t* result;  // by place of a butterfly of the last pass: the number of its first output
};

// A transform of N = A B points by A-point transforms of the columns and B-point transforms of the rows. Of
// their plans `start` holds the place of every output, `result` is as above, and nothing else past the passes
// is used.
template <class T> struct mixed_plan {
  std::ptrdiff_t points;
  int lanes;
  fft_plan<T> over_columns;
  fft_plan<T> over_rows;
  const T* twiddles;  // vectors of w_N^(n2 k1), k1 within groups of n2
};

// Deinterleaving two vectors of complex points leaves the points of a group in this order, p the place in the
// vector: all shuffles stay within 128 bits.
template <class T> constexpr int point_at(int p, int lanes) noexcept {
  constexpr int half = 8 / static_cast<int>(sizeof(T));
  const int block = p / (2 * half);
  const int inside = p % (2 * half);
  return inside < half ? half * block + inside : lanes / 2 + half * block + inside - half;
}

}  // namespace sigpak::kernels
