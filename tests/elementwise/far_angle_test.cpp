// SPDX-License-Identifier: MIT
// The circular functions where they are hardest: beside multiples of pi / 2, and, in single precision, beside
// the middle of two floats.
#include <gtest/gtest.h>

#include "elementwise/functions.h"

namespace sigpak::test {
namespace {

template <class V> class FarAngle : public testing::Test {};
TYPED_TEST_SUITE(FarAngle, records, record_names);

// The m with at most `bits` bits that brings m 2^exponent closest to a multiple of pi / 2: the denominator of
// a convergent of the continued fraction of 2^exponent 2 / pi. Source: W. Kahan, Minimizing q * m - n, 1983.
long double closest_significand(int bits, int exponent) {
  exact rest(mpfr_prec_t(1400));
  exact whole(mpfr_prec_t(1400));
  mpfr_const_pi(rest.get(), MPFR_RNDN);
  mpfr_ui_div(rest.get(), 2, rest.get(), MPFR_RNDN);
  mpfr_mul_2si(rest.get(), rest.get(), exponent, MPFR_RNDN);
  long double before = 1;
  long double m = 0;
  for (;;) {
    mpfr_floor(whole.get(), rest.get());
    const long double next = mpfr_get_ld(whole.get(), MPFR_RNDN) * m + before;
    if (next >= std::ldexp(1.0L, bits)) return m;
    before = m;
    m = next;
    mpfr_sub(rest.get(), rest.get(), whole.get(), MPFR_RNDN);
    mpfr_ui_div(rest.get(), 1, rest.get(), MPFR_RNDN);
  }
}

// For every exponent of both precisions, and some beside which the functions of C libraries lose digits.
template <record V> samples<V> angles_beside_multiples() {
  using T = scalar<V>;
  constexpr int bits = std::numeric_limits<T>::digits;
  samples<V> x;
  if (is_double<V>) {
    for (const double known :
         {0x1.4c96c11134d36p+578, 0x1.69eab0985179bp+246, 0x1.6ac5b262ca1ffp+849, 0x1.a39deffffffffp+26})
      x.push_back(static_cast<T>(known));
  }
  for (int exponent = 1 - bits; exponent <= std::numeric_limits<T>::max_exponent - bits; ++exponent) {
    const long double m = closest_significand(bits, exponent);
    const T angle = static_cast<T>(std::ldexp(m, exponent));
    if (m > 0) x.insert(x.end(), {angle, -angle, angle / 4, std::nextafter(angle, T(0))});
  }
  return x;
}

bool is_circular(const unary_function& f) {
  return f.definition == mpfr_sin || f.definition == mpfr_cos || f.definition == mpfr_tan ||
         f.definition == exact_sinc;
}

TYPED_TEST(FarAngle, KeepsItsDigitsBesideMultiplesOfAQuarterTurn) {
  using V = TypeParam;
  const samples<V> x = angles_beside_multiples<V>();
  for (const unary_function& f : unary_functions()) {
    if (!is_circular(f)) continue;
    expect_exact<V>(f, x);
    expect_exact<V>(f, arguments<V>(f, watched() ? 800 : 8000, 23));
  }
}

// The floats whose results lie closest to the middle of two, 2^-27 ulp and less, found by trying all of them,
// and those at which one good double was on the wrong side. Each fills whole vectors.
TYPED_TEST(FarAngle, DecidesBetweenTwoFloats) {
  using V = TypeParam;
  samples<V> x;
  for (const double hard :
       {0x1p-12,         0x1.a8872ap-11,  0x1.20ffccp-7,  0x1.6f1b7p+5,   0x1.8f219cp+5,  0x1.0d5fdcp+20,
        0x1.03b948p+21,  0x1.3240bcp-3,   0x1.02731p+2,   0x1.02e9bap+2,  0x1.ccfeb2p+2,  0x1.d4a88ep+6,
        0x1.13b0a4p+8,   0x1.3c110ap+11,  0x1.78b08cp+11, 0x1.c65546p+17, 0x1.ca40ccp+17, 0x1.fc2f1cp+18,
        0x1.1d341ap+19,  0x1.808e64p+20,  0x1.7d3d98p+23, 0x1.150546p+25, 0x1.608834p+26, 0x1.4a7becp-2,
        0x1.887814p+51,  0x1.3170fp+63,   0x1.fa6748p+64, 0x1.2b9622p+67, 0x1.550bacp+77, 0x1.524856p+80,
        0x1.487e0cp+103, 0x1.96344ep+117, 0x1.601ac4p-2,  0x1.4fd68p-1,   0x1.23beb6p+0,  0x1.43e0bap-7,
        0x1.0654b2p-6,   0x1.2f6602p-6,   0x1.f593cap-6,  0x1.74a0d8p-1,  0x1.0cb0cep+0}) {
    for (const double near : {hard, -hard}) x.insert(x.end(), 37, static_cast<scalar<V>>(near));
  }
  for (const unary_function& f : unary_functions()) {
    if (is_circular(f)) expect_exact<V>(f, x);
  }
}

}  // namespace
}  // namespace sigpak::test
