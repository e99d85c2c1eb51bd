// The permutation that sends every point to the index with its address bits reversed.
#pragma once

#include "fft/baseline/tables.h"

namespace sigpak {

template <class T> class bit_reversal {
 public:
  // points a power of two. With `scaled`, every scalar is multiplied by 1 / points on its way.
  status prepare(index points, bool scaled) noexcept;

  // In place, on single scalars or on pairs.
  void run(T* x) const noexcept;
  void run_pairs(T* z) const noexcept;

 private:
  template <index width> void move(T* x) const noexcept;

  int bits_ = 0;
  bool scaled_ = false;
  T factor_ = 1;
  const std::uint32_t* swaps_ = nullptr;  // null where tiles do without
  const std::uint32_t* fixed_points_ = nullptr;
};

}  // namespace sigpak
