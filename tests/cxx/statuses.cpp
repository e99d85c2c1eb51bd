// SPDX-License-Identifier: MIT
// sigpak.hpp as C++17 without exceptions: statuses alone, and spans of its own.
#include <sigpak.hpp>

int main() {
  sigpak::recordf v;
  if (!v.try_resize(12, sigpak::form::real)) return 1;
  for (float& x : v.scalars()) x = 2;
  if (sigpak::status::dspi_rfft(v) != -1 || sigpak::status::dspi_rdft(v) != 0) return 1;
  const sigpak::span<const std::complex<float>> bins = static_cast<const sigpak::recordf&>(v).complexes();
  return bins.size() == 7 && std::abs(bins[0] - 2.0F) < 1e-6F ? 0 : 1;
}
