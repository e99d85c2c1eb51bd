// Powers of e and of ten, in place.
#include <algorithm>
#include <cmath>

#include "core/guard.h"
#include "elementwise/elementwise.h"
#include "elementwise/exponential_parts.h"
#include "elementwise/in_place.h"
#include "elementwise/logarithm_factors.h"
#include "elementwise/precise.h"
#include "kernels/elementary/functions.h"
#include "kernels/elementary/sine_parts.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

template <class T> double guarded_exp(double x) noexcept {
  return x > wide_guard<T>::log_huge ? wide_guard<T>::huge : std::exp(x);
}

template <class T> double guarded_exp10(double x) noexcept {
  return x > wide_guard<T>::log10_huge ? wide_guard<T>::huge : power_of_ten(x);
}

// size * 2^-power_lift in the direction of the angle. In single precision the leading doubles are enough.
template <class T> point<double> turned(double_double size, double angle) noexcept {
  constexpr double drop = power_of_two(-power_lift);
  const sine_cosine y = sine_and_cosine_for<T>(angle);
  if constexpr (sizeof(T) < sizeof(double)) {
    const double plain = rounded(size) * drop;
    return {plain * y.cosine.hi, plain * y.sine.hi};
  } else {
    return {rounded_component(size, y.cosine) * drop, rounded_component(size, y.sine) * drop};
  }
}

template <class T> void exponential(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::exponential_functions<T>>()) return wide->exponential(x, n);
  map_nearest_one_by_one(x, n, guarded_exp<T>, precise_exp);
}

template <class T> void exponential_points(T* z, index points) noexcept {
  if (const auto* wide = at_level<kernels::exponential_functions<T>>())
    return wide->exponential_points(z, points);
  map_pairs(z, points, [](double a, double b) {
    constexpr double_double limit = {wide_guard<T>::huge * power_of_two(power_lift), 0};
    return turned<T>(a > wide_guard<T>::log_huge ? limit : lifted_exponential(a), b);
  });
}

// A sample below -H stops the pass: it and everything after it stay as they are.
template <class T> void exponential10(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::exponential_functions<T>>()) return wide->exponential10(x, n);
  const T* stop = std::find_if(x, x + n, [](T sample) { return sample < -guard<T>::huge; });
  map_nearest(x, stop - x, guarded_exp10<T>, precise_exp10);
}

template <class T> void exponential10_points(T* z, index points) noexcept {
  if (const auto* wide = at_level<kernels::exponential_functions<T>>())
    return wide->exponential10_points(z, points);
  map_pairs(z, points, [](double a, double b) {
    constexpr double limit = wide_guard<T>::huge * power_of_two(power_lift);
    const double_double size = a > wide_guard<T>::log10_huge ? double_double{limit, 0}
                               : a < -wide_guard<T>::huge    ? double_double{-limit, 0}
                                                             : lifted_power_of_ten(a);
    return turned<T>(size, b * logarithm_factors<T>::ln10);
  });
}

template <record V> status exponentiate10(V* v) noexcept {
  return apply(v, exponential10<scalar<V>>, exponential10_points<scalar<V>>);
}

}  // namespace

template <record V> status exponentiate(V* v) noexcept {
  return apply(v, exponential<scalar<V>>, exponential_points<scalar<V>>);
}

template status exponentiate(dsp_vec*) noexcept;
template status exponentiate(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_exp(dsp_vec* v) { return exponentiate(v); }
int32_t dspfi_exp(dspf_vec* v) { return exponentiate(v); }
int32_t dspi_exp10(dsp_vec* v) { return exponentiate10(v); }
int32_t dspfi_exp10(dspf_vec* v) { return exponentiate10(v); }
