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

struct reference {
  double x;  // exact in single precision
  double value;
};

template <record V> struct bessel_function {
  const char* name;
  std::int32_t (*run)(V*);
  std::vector<reference> values;
};

// From the reference data of the Boost mathematics library, computed there with more than 35 digits.
template <record V> std::vector<bessel_function<V>> published() {
  return {
      {"i0",
       TWIN(i_besi0),
       {{0.014336004853248596, 1.000051380918774607908083},
        {0.6540834903717041, 1.109850431257999241542413},
        {5.113992691040039, 30.16460113324413124385978},
        {9.507055282592773, 1765.221230864037183559483},
        {24.750102996826172, 4520582716.299093122418958},
        {63.77220153808594, 2.485235994576969791355324e+26}}},
      {"j0",
       TWIN(i_besj0),
       {{0.24955767393112183, 0.9844907414458467656383892},
        {0.9838474988937378, 0.7722629604360946893704392},
        {3.4516777992248535, -0.3729999217923199419780408},
        {7.882370948791504, 0.1981996630505566917360863},
        {15.848876953125, -0.1592255309532503835966921}}},
      {"j1",
       TWIN(i_besj1),
       {{0.29709547758102417, 0.1469147961900711346572957},
        {1.9928812980651855, 0.5771736137851551766101983},
        {3.9150137901306152, -0.03315763536880066424018547},
        {7.985845565795898, 0.2325970018905132078980793},
        {31.48311996459961, -0.09230877498012981860222086}}},
      {"y0",
       TWIN(i_besy0),
       {{0.23917420208454132, -0.9614438784503260001420625},
        {1.7855839729309082, 0.4741447443427281185149710},
        {4.877019882202148, -0.2878028614684715596290260},
        {13.924911499023438, 0.1142985183059252859759404},
        {49.82306671142578, -0.1065466287843043964466711}}},
      {"y1",
       TWIN(i_besy1),
       {{0.23917420208454132, -2.816025505957848702890231},
        {1.7855839729309082, -0.2323574880952473756698741},
        {4.877019882202148, 0.1887793753606189589996791},
        {6.349340915679932, -0.2511307972102585372917123},
        {9.419098854064941, 0.1903612271361024667198227}}},
  };
}

TYPED_TEST(Special, BesselFunctionsGivePublishedValues) {
  using V = TypeParam;
  for (const auto& f : published<V>()) {
    for (const reference& r : f.values) {
      signal<V> v{r.x};
      ASSERT_EQ(static_cast<double>(v.data[0]), r.x);
      ASSERT_EQ(f.run(&v), 0);
      const double allowed = 10 * unit_roundoff<V> * std::max(std::abs(r.value), 0.1);
      EXPECT_NEAR(static_cast<double>(v.data[0]), r.value, allowed) << f.name << "(" << r.x << ")";
    }
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
