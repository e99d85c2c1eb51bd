// The four-section recursive low-pass.
#include <gtest/gtest.h>

#include <complex>
#include <numbers>

#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Hwfilt : public testing::Test {
 protected:
  void SetUp() override { TWIN(_free_internal)(); }
};
TYPED_TEST_SUITE(Hwfilt, records, record_names);

TYPED_TEST(Hwfilt, ImpulseResponseHasTheTransferFunctionOfFourSections) {
  using V = TypeParam;
  signal<V> v(samples<V>(400));
  v.data[0] = 1;
  ASSERT_EQ(TWIN(i_hwfilt)(&v, 0), 0);
  EXPECT_EQ(v.data[0], scalar<V>(0.00390625));
  for (const double f : {0.0, 0.1, 0.2, 0.25, 0.3, 0.5}) {
    const auto z =
        std::polar(1.0L, -2 * std::numbers::pi_v<long double> * static_cast<long double>(f));  // 1 / z
    const auto section = (1.0L + z) * (1.0L + z + z * z) / (4.0L + 2.0L * z * z);
    std::complex<long double> response = 0;
    std::complex<long double> power = 1;
    for (index n = 0; n < 400; ++n, power *= z) response += static_cast<long double>(v.data[n]) * power;
    EXPECT_LE(std::abs(response - std::pow(section, 4)), 40 * unit_roundoff<V>) << f;
  }
}

TYPED_TEST(Hwfilt, AnySplitGivesTheWholeAndComplexPartsAreTwoSignals) {
  using V = TypeParam;
  const auto x = noise<V>(600);
  const signal<V> pairs(x, true);
  signal<V> whole;
  signal<V> rest;
  ASSERT_EQ(TWIN(d_hwfilt)(&pairs, &whole, 0, &rest), 0);
  EXPECT_EQ(rest.points, 12U);
  for (const index part : {0, 1}) {
    signal<V> state;
    samples<V> joined;
    index begin = 0;
    for (const index block : {1, 2, 0, 5, 92, 200}) {
      samples<V> one;
      for (index n = begin; n < begin + block; ++n) one.push_back(x[2 * n + part]);
      begin += block;
      signal<V> v(one);
      ASSERT_EQ(TWIN(d_hwfilt)(&v, &v, 0, &state), 0);
      const auto out = v.values();
      joined.insert(joined.end(), out.begin(), out.end());
    }
    for (index n = 0; n < 300; ++n) EXPECT_EQ(joined[n], whole.data[2 * n + part]) << n;
  }
}

TYPED_TEST(Hwfilt, StateOfAnotherFormIsConvertedAndCut) {
  using V = TypeParam;
  signal<V> state(noise<V>(40), true);
  samples<V> re;
  for (index i = 0; i < 12; ++i) re.push_back(state.data[2 * i]);
  signal<V> real_state(re);
  signal<V> a(noise<V>(20, 3));
  signal<V> b(noise<V>(20, 3));
  ASSERT_EQ(TWIN(d_hwfilt)(&a, &a, 0, &state), 0);
  ASSERT_EQ(TWIN(d_hwfilt)(&b, &b, 0, &real_state), 0);
  EXPECT_EQ(a.values(), b.values());
  EXPECT_EQ(state.points, 12U);
  EXPECT_EQ(state.complex, 0);
}

TYPED_TEST(Hwfilt, WithoutAStateAllCallsContinueOneStream) {
  using V = TypeParam;
  const auto x = noise<V>(50);
  signal<V> whole(x);
  signal<V> state;
  ASSERT_EQ(TWIN(d_hwfilt)(&whole, &whole, 0, &state), 0);
  signal<V> head(samples<V>(x.begin(), x.begin() + 20));
  signal<V> tail(samples<V>(x.begin() + 20, x.end()));
  signal<V> out;
  ASSERT_EQ(TWIN(i_hwfilt)(&head, 0), 0);
  ASSERT_EQ(TWIN(d_hwfilt)(&tail, &out, 0, nullptr), 0);
  EXPECT_EQ(head.data[19], whole.data[19]);
  EXPECT_EQ(out.data[29], whole.data[49]);
  TWIN(_free_internal)();
  signal<V> again(x);
  ASSERT_EQ(TWIN(i_hwfilt)(&again, 0), 0);
  EXPECT_EQ(again.values(), whole.values());
}

TYPED_TEST(Hwfilt, RefusesTheReservedArgumentAndRecoversFromFailure) {
  using V = TypeParam;
  signal<V> v{1, 2, 3};
  EXPECT_EQ(TWIN(i_hwfilt)(&v, 1), -1);
  EXPECT_EQ(v.values(), (samples<V>{1, 2, 3}));
  signal<V> wanted{1, 2, 3};
  signal<V> state;
  ASSERT_EQ(TWIN(d_hwfilt)(&wanted, &wanted, 0, &state), 0);
  {
    const failing_records<V> none(0);
    EXPECT_EQ(TWIN(i_hwfilt)(&v, 0), -1);
  }
  EXPECT_EQ(TWIN(i_hwfilt)(&v, 0), 0);
  EXPECT_EQ(v.values(), wanted.values());
}

}  // namespace
}  // namespace sigpak::test
