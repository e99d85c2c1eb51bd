// SPDX-License-Identifier: MIT
// Smoothing kernels whose spectrum is that of a window: a cosine-sum window, or Kaiser's.
#include <algorithm>
#include <limits>
#include <numbers>

#include "filters/design.h"

namespace sigpak {
namespace {

// Windows of minimum side lobes as filters of as many taps as they have lines: the three terms of Nuttall
// 1981, his four, and the five that extend the family.
constexpr double three_terms[] = {0.4243801, 0.4973406, 0.0782793};
constexpr double four_terms[] = {0.3635819, 0.4891775, 0.1365995, 0.0106411};
constexpr double five_terms[] = {0.3232153788984078, 0.47149214396487166, 0.1755341299514293,
                                 0.028496990099716707, 0.0012613570855745683};

template <class T, std::size_t terms> void store_lines(T* h, const double (&a)[terms]) noexcept {
  constexpr auto centre = static_cast<index>(terms) - 1;
  h[centre] = static_cast<T>(a[0]);
  for (index k = 1; k <= centre; ++k) h[centre - k] = h[centre + k] = static_cast<T>(a[k] / 2);
}

double cosine_sum_shape(index n) noexcept {
  constexpr double pi = std::numbers::pi;
  const auto taps = static_cast<double>(n);
  switch (n) {
    case 3:
      return 6.321022275;
    case 4:
      return 7.5194;
    case 6:
      return 10.686;
    case 8:
      return 13.962;
    case 11:
      return 18.85664;
    default:
      return n % 2 == 0 ? taps * pi / 2 + 1.4 : (taps + 1) * pi / 2;
  }
}

double kaiser_shape(index n) noexcept {
  switch (n) {
    case 3:
      return 5.922377;
    case 5:
      return 9.4861669;
    case 7:
      return 12.56733;
    case 9:
      return 15.939169;
    case 11:
      return 19.10109;
    default:
      return 1.610830415 * static_cast<double>(n) + 1.386795655;
  }
}

// sinh and sin as far as the largest tap, sinh(peak), leaves their sum finite; beyond, both divided by
// exp(peak) / 2, which the normalisation takes out.
template <class T> class scaled_functions {
 public:
  scaled_functions(T peak, index n) noexcept
      : peak_(peak),
        plain_(std::sinh(peak) <= std::numeric_limits<T>::max() / static_cast<T>(n)),
        unit_(plain_ ? T(1) : 2 * std::exp(-peak)) {}

  T hyperbolic(T r) const noexcept {
    return plain_ ? std::sinh(r) : std::exp(r - peak_) - std::exp(-r - peak_);
  }
  T circular(T r) const noexcept { return plain_ ? std::sin(r) : unit_ * std::sin(r); }
  T one() const noexcept { return unit_; }

 private:
  T peak_;
  bool plain_;
  T unit_;
};

}  // namespace

template <record V> status cosine_sum_kernel(V* v, scalar<V> b) noexcept {
  using T = scalar<V>;
  T* const h = v->data;
  const index n = length(v);
  if (n == 5) return store_lines(h, three_terms), ok;
  if (n == 7) return store_lines(h, four_terms), ok;
  if (n == 9) return store_lines(h, five_terms), ok;
  if (b == 0) b = static_cast<T>(cosine_sum_shape(n));
  const scaled_functions<T> f(std::abs(b), n);
  if (n % 2 != 0) h[n / 2] = f.hyperbolic(std::abs(b));
  for_pairs(n, 4 * b / static_cast<T>(n + 1), [=](index left, index right, T u) {
    const T r = b * b - u * u / 4;
    h[left] = h[right] = r > 0 ? f.hyperbolic(std::sqrt(r)) : f.circular(std::sqrt(-r));
  });
  return normalise_sum(v);
}

template <record V> status kaiser_spectrum_kernel(V* v, scalar<V> b) noexcept {
  using T = scalar<V>;
  constexpr T pi = design_constants<T>::pi;
  T* const h = v->data;
  const index n = length(v);
  if (b == 0) b = static_cast<T>(kaiser_shape(n));
  const scaled_functions<T> f(std::abs(b), n);
  if (n % 2 != 0) h[n / 2] = f.hyperbolic(std::abs(b)) / std::abs(b);
  for_pairs(n, 4 * std::sqrt(b * b + pi * pi) / static_cast<T>(n + 1), [=](index left, index right, T u) {
    const T square = b * b - u * u / 4;
    const T r = std::sqrt(std::abs(square));
    h[left] = h[right] = square > 0 ? f.hyperbolic(r) / r : r != 0 ? f.circular(r) / r : f.one();
  });
  return normalise_sum(v);
}

template status cosine_sum_kernel(dsp_vec*, double) noexcept;
template status cosine_sum_kernel(dspf_vec*, float) noexcept;
template status kaiser_spectrum_kernel(dsp_vec*, double) noexcept;
template status kaiser_spectrum_kernel(dspf_vec*, float) noexcept;

}  // namespace sigpak
