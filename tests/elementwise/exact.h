// SPDX-License-Identifier: MIT
// The distance of a result from the exact value, by arithmetic of 320 bits.
#pragma once

#include <mpfr.h>

#include <algorithm>
#include <limits>

namespace sigpak::test {

// Enough for sums of squares of doubles without rounding, and for errors of 2^-40 ulp.
inline constexpr mpfr_prec_t bits_of_squares = 320;
inline constexpr mpfr_prec_t bits_of_results = 96;

class exact {
 public:
  explicit exact(mpfr_prec_t bits = bits_of_squares) { mpfr_init2(value_, bits); }
  explicit exact(double x) : exact(bits_of_squares) { mpfr_set_d(value_, x, MPFR_RNDN); }
  ~exact() { mpfr_clear(value_); }
  exact(const exact&) = delete;
  exact& operator=(const exact&) = delete;

  mpfr_ptr get() { return value_; }
  mpfr_srcptr get() const { return value_; }

 private:
  mpfr_t value_;
};

// |got - wanted| in units of the last place that T has at `wanted`.
template <class T> double ulps(T got, const exact& wanted) {
  if (mpfr_nan_p(wanted.get())) return got != got ? 0 : std::numeric_limits<double>::infinity();
  const T nearest = static_cast<T>(mpfr_get_d(wanted.get(), MPFR_RNDN));
  if (got == nearest && (got == 0 || got - got != 0)) return 0;
  if (got - got != 0) return std::numeric_limits<double>::infinity();
  using limits = std::numeric_limits<T>;
  const long exponent = mpfr_zero_p(wanted.get())
                            ? limits::min_exponent
                            : std::max<long>(mpfr_get_exp(wanted.get()), limits::min_exponent);
  exact difference(bits_of_results);
  mpfr_sub_d(difference.get(), wanted.get(), static_cast<double>(got), MPFR_RNDN);
  mpfr_mul_2si(difference.get(), difference.get(), limits::digits - exponent, MPFR_RNDN);
  return std::abs(mpfr_get_d(difference.get(), MPFR_RNDN));
}

}  // namespace sigpak::test
