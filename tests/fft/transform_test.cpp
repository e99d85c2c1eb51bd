// SPDX-License-Identifier: MIT
// The door to the transforms: every length, real and complex data, at whatever level the suite runs.
#include "fft/transform.h"

#include <gtest/gtest.h>

#include <limits>

#include "core/power_of_two.h"
#include "spectral/reference.h"
#include "support/failing.h"
#include "support/fence.h"

namespace sigpak::test {
namespace {

template <class V> class Transform : public testing::Test {};
TYPED_TEST_SUITE(Transform, records, record_names);

constexpr double error_limit = 4;

std::vector<index> lengths() {
  std::vector<index> all = {67, 84, 100, 108, 128, 256, 480, 512, 1003, 1024};
  for (index n = 1; n <= 64; ++n) all.push_back(n);
  return all;
}

TYPED_TEST(Transform, RealsBecomePairs) {
  using V = TypeParam;
  for (const index n : lengths()) {
    for (const bool inverse : {false, true}) {
      const auto in = noise<V>(n, static_cast<unsigned>(n));
      const auto wanted = exact_transform(exact_points<V>(signal<V>(in)), inverse);
      const auto got =
          run_fenced<V>(in, n < 2 ? 2 : 2 * n, 3, [=](auto* x) { return transform_reals(x, n, inverse); });
      EXPECT_LT(transform_error<V>(signal<V>(got, true), wanted, n), error_limit) << n;
    }
  }
}

// What the outer bins of a power of two have beside their real parts does not count.
TYPED_TEST(Transform, HalfSpectraOfEveryLength) {
  using V = TypeParam;
  constexpr auto nan = std::numeric_limits<scalar<V>>::quiet_NaN();
  for (const index n : lengths()) {
    const auto in = noise<V>(n, static_cast<unsigned>(n));
    auto wanted = exact_transform(exact_points<V>(signal<V>(in)), false);
    wanted.resize(static_cast<std::size_t>(n / 2 + 1));
    const index room = half_spectrum_room(n);
    auto half = run_fenced<V>(in, room, 1, [=](auto* x) { return forward_real(x, n); });
    half.resize(2 * wanted.size());
    EXPECT_LT(transform_error<V>(signal<V>(half, true), wanted, n), error_limit) << n;
    if (n >= 4 && is_power_of_two(n)) half[1] = half[half.size() - 1] = nan;
    auto back = run_fenced<V>(half, room, 1, [=](auto* x) { return inverse_real(x, n); });
    back.resize(in.size());
    EXPECT_LT(relative_l2(back, in), 32 * unit_roundoff<V>) << n;
  }
}

TYPED_TEST(Transform, FailuresLeaveTheData) {
  using V = TypeParam;
  using T = scalar<V>;
  const struct {
    status (*run)(T* x, index n);
    index (*scalars)(index n);
  } doors[] = {{[](T* x, index n) { return transform(x, n, true); }, [](index n) { return 2 * n; }},
               {[](T* x, index n) { return transform_reals(x, n, false); }, [](index n) { return n; }},
               {[](T* x, index n) { return forward_real(x, n); }, [](index n) { return n; }},
               {[](T* x, index n) { return inverse_real(x, n); }, [](index n) { return 2 * (n / 2 + 1); }}};
  for (const auto& door : doors) {
    for (const index n : {67, 480, 1003, 1024}) {
      for (int allowed = 0;; ++allowed) {
        ASSERT_LT(allowed, 40);
        ASSERT_EQ(TWIN(_free_internal)(), 0);
        auto x = noise<V>(2 * n + 2);
        const auto before = x;
        const failing_tables rest(allowed);
        if (door.run(x.data(), n) == ok) break;
        const auto count = door.scalars(n);
        EXPECT_TRUE(std::equal(x.begin(), x.begin() + count, before.begin())) << n << ' ' << allowed;
      }
    }
  }
  ASSERT_EQ(TWIN(_free_internal)(), 0);
}

}  // namespace
}  // namespace sigpak::test
