// Real and complex forms, magnitudes, and runs of points.
#include <gtest/gtest.h>

#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class ComplexForms : public testing::Test {};
TYPED_TEST_SUITE(ComplexForms, records, record_names);

TYPED_TEST(ComplexForms, RealAndComplexAreInverse) {
  using V = TypeParam;
  for (const index n : edge_sizes()) {
    for (const bool lent : {false, true}) {
      const samples<V> x = noise<V>(n);
      signal<V> v(x);
      if (lent) v.lend();
      ASSERT_EQ(TWIN(i_rtoc)(&v), 0);
      ASSERT_EQ(v.complex, 1);
      ASSERT_EQ(length<V>(&v), n);
      for (index i = 0; i < n; ++i) {
        ASSERT_EQ(v.data[2 * i], x[static_cast<std::size_t>(i)]);
        ASSERT_EQ(v.data[2 * i + 1], 0);
      }
      ASSERT_EQ(TWIN(i_real)(&v), 0);
      ASSERT_EQ(v.complex, 0);
      ASSERT_EQ(v.values(), x);
    }
  }
}

}  // namespace
}  // namespace sigpak::test
