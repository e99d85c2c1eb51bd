// The coarse roots, from which all others start.
#include "fft/plans/roots_of_unity.h"

#include <numbers>

namespace sigpak::kernels {
namespace {

// k of 256 parts of a turn; the series of at most an eighth end below 2^-70.
constexpr long double sine_of(int k) noexcept {
  if (k > 128) return -sine_of(k - 128);
  if (k > 64) return sine_of(128 - k);
  const bool cosine = k > 32;
  const long double x = std::numbers::pi_v<long double> / 128 * (cosine ? 64 - k : k);
  long double term = cosine ? 1 : x;
  long double sum = term;
  for (int n = cosine ? 2 : 3; n < 24; n += 2) {
    term *= -x * x / (n * (n - 1));
    sum += term;
  }
  return sum;
}

constexpr coarse_sines split_sines() noexcept {
  coarse_sines out = {};
  for (int k = 0; k < coarse_roots + coarse_roots / 4; ++k) {
    const long double value = sine_of(k % coarse_roots);
    const long double magnitude = value < 0 ? -value : value;
    const auto high = static_cast<double>(static_cast<index>(magnitude * 0x1p22L + 0.5L)) * 0x1p-22;
    out.high[k] = value < 0 ? -high : high;
    out.low[k] = static_cast<double>(value - static_cast<long double>(out.high[k]));
  }
  return out;
}

}  // namespace

constinit const coarse_sines sines = split_sines();

}  // namespace sigpak::kernels
