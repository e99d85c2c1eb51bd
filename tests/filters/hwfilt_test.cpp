// SPDX-License-Identifier: MIT
// The four-section recursive low-pass.
#include <numbers>

#include "filters/streamed.h"

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
  const signal<V> pairs(noise<V>(600), true);
  signal<V> whole;
  signal<V> rest;
  ASSERT_EQ(TWIN(d_hwfilt)(&pairs, &whole, 0, &rest), 0);
  EXPECT_EQ(rest.points, 12U);
  for (const auto& to_part : {TWIN(i_real), TWIN(i_imag)}) {
    signal<V> part(pairs.values(), true);
    signal<V> wanted(whole.values(), true);
    to_part(&part);
    to_part(&wanted);
    signal<V> state;
    const auto run = [&state](const V* block, V* out) { return TWIN(d_hwfilt)(block, out, 0, &state); };
    EXPECT_EQ(in_blocks<V>(part, {1, 2, 0, 5, 92, 200}, run), wanted.values());
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
  const signal<V> in(noise<V>(50));
  signal<V> whole;
  signal<V> state;
  ASSERT_EQ(TWIN(d_hwfilt)(&in, &whole, 0, &state), 0);
  const auto run = [](const V* block, V* out) { return TWIN(d_hwfilt)(block, out, 0, nullptr); };
  EXPECT_EQ(in_blocks<V>(in, {20, 30}, run), whole.values());
  TWIN(_free_internal)();
  signal<V> again(in.values());
  ASSERT_EQ(TWIN(i_hwfilt)(&again, 0), 0);
  EXPECT_EQ(again.values(), whole.values());
}

TYPED_TEST(Hwfilt, RefusesTheReservedArgumentAndRecoversFromFailure) {
  using V = TypeParam;
  signal<V> v{1, 2, 3};
  signal<V> wanted;
  EXPECT_EQ(TWIN(i_hwfilt)(&v, 1), -1);
  ASSERT_EQ(TWIN(d_hwfilt)(&v, &wanted, 0, nullptr), 0);
  TWIN(_free_internal)();
  {
    const failing_records none(0);
    EXPECT_EQ(TWIN(i_hwfilt)(&v, 0), -1);
  }
  EXPECT_EQ(v.values(), (samples<V>{1, 2, 3}));
  EXPECT_EQ(TWIN(i_hwfilt)(&v, 0), 0);
  EXPECT_EQ(v.values(), wanted.values());
}

}  // namespace
}  // namespace sigpak::test
