// Roots of unity by two tables.
#include "kernels/roots.h"

#include "core/memory.h"

namespace sigpak::kernels {

roots::roots(index n) noexcept : fines_((n + coarse_roots - 1) / coarse_roots) {
  fine_ = allocate_table<root>(fines_);
  if (fine_ == nullptr) return;
  for (index k = 0; k < fines_; ++k) fine_[k] = root_of_unity<long double>(k, n);
  const bool regular = n % coarse_roots == 0;
  for (int k = 0; k < coarse_roots; ++k) {
    coarse_[k] = regular ? root{cosine(k), sine(k)} : root_of_unity<long double>(k * fines_, n);
  }
}

roots::~roots() { free_table(fine_); }

}  // namespace sigpak::kernels
