// SPDX-License-Identifier: MIT
// Bessel functions against published values, I0 against its power series summed to the end, and the test of
// roundings.
#include <gtest/gtest.h>

#include "elementwise/elementwise.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Special : public testing::Test {};
TYPED_TEST_SUITE(Special, records, record_names);

// One value of each range of the rules for I0; the others are those of the C library. From the reference data
// of the Boost mathematics library, computed there with more than 35 digits, at arguments that are exact in
// single precision.
TYPED_TEST(Special, BesselFunctionsGivePublishedValues) {
  using V = TypeParam;
  const struct {
    std::int32_t (*run)(V*);
    double x, value;
  } published[] = {{TWIN(i_besi0), 0.6540834903717041, 1.109850431257999241542413},
                   {TWIN(i_besi0), 9.507055282592773, 1765.221230864037183559483},
                   {TWIN(i_besi0), 63.77220153808594, 2.485235994576969791355324e+26},
                   {TWIN(i_besj0), 0.24955767393112183, 0.9844907414458467656383892},
                   {TWIN(i_besj0), 15.848876953125, -0.1592255309532503835966921},
                   {TWIN(i_besj1), 1.9928812980651855, 0.5771736137851551766101983},
                   {TWIN(i_besj1), 31.48311996459961, -0.09230877498012980861222086},
                   {TWIN(i_besy0), 0.23917420208454132, -0.9614438784503260001420625},
                   {TWIN(i_besy0), 49.82306671142578, -0.1065466287843043964466711},
                   {TWIN(i_besy1), 0.23917420208454132, -2.816025505957848702890231},
                   {TWIN(i_besy1), 9.419098854064941, 0.1903612271361024667198227}};
  for (const auto& p : published) {
    signal<V> v{p.x};
    ASSERT_EQ(static_cast<double>(v.data[0]), p.x);
    ASSERT_EQ(p.run(&v), 0);
    const double allowed = 10 * unit_roundoff<V> * std::max(std::abs(p.value), 0.1);
    EXPECT_NEAR(static_cast<double>(v.data[0]), p.value, allowed) << &p - published;
  }
}

long double i0_series(long double x) {
  long double sum = 1;
  long double term = 1;
  for (int k = 1; term > sum * 1e-22L; ++k) sum += term *= x * x / 4 / (static_cast<long double>(k) * k);
  return sum;
}

TYPED_TEST(Special, ModifiedBesselFunctionJoinsItsRules) {
  using V = TypeParam;
  using T = scalar<V>;
  for (T x = 0; x <= T(is_double<V> ? 700 : 80); x += x < T(80) ? T(0.0625) : T(62)) {
    for (const T at : {x, -x, std::nextafter(x, T(100))}) {
      const long double wanted = i0_series(static_cast<long double>(at));
      const double error = static_cast<double>((static_cast<long double>(bessel_i0(at)) - wanted) / wanted);
      EXPECT_LE(std::abs(error), (is_double<V> ? 2e-15 : 2e-7)) << at;
    }
  }
}

}  // namespace
}  // namespace sigpak::test
