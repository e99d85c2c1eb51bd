// Half a spectrum to the whole.
#include <gtest/gtest.h>

#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Reconstruction : public testing::Test {};
TYPED_TEST_SUITE(Reconstruction, records, record_names);

TYPED_TEST(Reconstruction, MirrorsTheHalf) {
  using V = TypeParam;
  struct {
    std::initializer_list<double> half;
    bool complex;
    int odd;
    std::initializer_list<double> whole;
  } const cases[] = {
      {{1, 2, 3, 4, 5, 6}, true, 0, {1, 2, 3, 4, 5, 6, 3, -4}},
      {{1, 2, 3, 4, 5, 6}, true, 5, {1, 2, 3, 4, 5, 6, 5, -6, 3, -4}},
      {{1, 2, 3, 4}, false, 0, {1, 2, 3, 4, 3, 2}},
      {{1, 2, 3, 4}, false, 1, {1, 2, 3, 4, 4, 3, 2}},
      {{1, 2}, false, 0, {1, 2}},
      {{1, 2}, false, 1, {1, 2, 2}},
      {{1, 2}, true, 1, {1, 2}},
      {{}, false, 1, {}},
  };
  for (const auto& c : cases) {
    for (const bool lent : {false, true}) {
      signal<V> v(c.half, c.complex);
      const signal<V> wanted(c.whole, c.complex);
      v.delta = 3;
      if (lent && v.points > 0) v.lend();
      ASSERT_EQ(TWIN(i_orecon)(&v, c.odd), 0);
      EXPECT_EQ(v.values(), wanted.values());
      EXPECT_EQ(v.delta, 3);
      if (c.odd != 0) continue;
      signal<V> even(c.half, c.complex);
      ASSERT_EQ(TWIN(i_recon)(&even), 0);
      EXPECT_EQ(even.values(), wanted.values());
    }
  }
}

TYPED_TEST(Reconstruction, FailsWithoutMemory) {
  using V = TypeParam;
  signal<V> v{1, 2, 3};
  const failing_records<V> none(0);
  EXPECT_EQ(TWIN(i_orecon)(&v, 1), -1);
}

}  // namespace
}  // namespace sigpak::test
