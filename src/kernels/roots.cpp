// Roots of unity by two tables.
#include "kernels/roots.h"

#include <cmath>
#include <numbers>

#include "core/memory.h"

namespace sigpak::kernels {
namespace {

// The angle is reduced to an eighth of a turn in whole numbers, before anything is rounded.
root exact_root(index k, index n) noexcept {
  constexpr auto quarter_turn = std::numbers::pi_v<long double> / 2;
  const index quarters = (8 * k + n) / (2 * n);
  const long double angle =
      quarter_turn * static_cast<long double>(4 * k - quarters * n) / static_cast<long double>(n);
  const long double c = std::cos(angle);
  const long double s = std::sin(angle);
  switch (quarters % 4) {
    case 0:
      return {c, s};
    case 1:
      return {-s, c};
    case 2:
      return {-c, -s};
    default:
      return {s, -c};
  }
}

}  // namespace

roots::roots(index n) noexcept : fines_((n + coarse_roots - 1) / coarse_roots) {
  fine_ = allocate_table<root>(fines_);
  if (fine_ == nullptr) return;
  for (index k = 0; k < fines_; ++k) fine_[k] = exact_root(k, n);
  const bool regular = n % coarse_roots == 0;
  for (int k = 0; k < coarse_roots; ++k) {
    coarse_[k] = regular ? root{cosine(k), sine(k)} : exact_root(k * fines_, n);
  }
}

roots::~roots() { free_table(fine_); }

}  // namespace sigpak::kernels
