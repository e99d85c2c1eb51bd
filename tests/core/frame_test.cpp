// SPDX-License-Identifier: MIT
// Hooks, the registry of caches, the version.
#include "core/frame.h"

#include <array>

#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Frame : public testing::Test {};
TYPED_TEST_SUITE(Frame, records, record_names);

template <class V> struct arena {
  static inline std::array<scalar<V>, 64> block;
  static inline std::vector<int> calls;  // 1 to allocate, 2 to reallocate and the shape before, 3 to release
  static std::int32_t allocate(V* v) { return calls.push_back(1), v->data = block.data(), -5; }
  static std::int32_t reallocate(V* v, std::uint32_t points, std::int32_t complex) {
    calls.insert(calls.end(), {2, static_cast<int>(points), complex});
    return v->data = block.data(), -5;
  }
  static std::int32_t release(V* v) { return calls.push_back(3), v->data = nullptr, -5; }
};

TYPED_TEST(Frame, HooksReplaceTheHeapOfTheirPrecisionAndReportTheOneBefore) {
  using V = TypeParam;
  using A = arena<V>;
  auto old_alloc = &A::allocate;
  auto old_realloc = &A::reallocate;
  auto old_free = &A::release;
  EXPECT_EQ(TWIN(_lib_alloc)(A::allocate, &old_alloc), 0);
  EXPECT_EQ(TWIN(_lib_realloc)(A::reallocate, &old_realloc), 0);
  EXPECT_EQ(TWIN(_lib_free)(A::release, &old_free), 0);
  EXPECT_TRUE(old_alloc == nullptr && old_realloc == nullptr && old_free == nullptr);

  using Other = std::conditional_t<is_double<V>, dspf_vec, dsp_vec>;
  EXPECT_EQ(signal<Other>({1, 2}).values(), (samples<Other>{1, 2}));
  {
    signal<V> v;
    v.points = 4;
    EXPECT_EQ(TWIN(_alloc)(&v), 0);
    EXPECT_EQ(v.alloc, 4);
    v.complex = 1;
    EXPECT_EQ(TWIN(_realloc)(&v, 4, 0), 0);
    EXPECT_EQ(v.alloc, 8);
  }
  EXPECT_EQ(A::calls, (std::vector{1, 2, 4, 0, 3}));

  EXPECT_EQ(TWIN(_lib_alloc)(nullptr, &old_alloc), 0);
  EXPECT_EQ(TWIN(_lib_realloc)(nullptr, &old_realloc), 0);
  EXPECT_EQ(TWIN(_lib_free)(nullptr, &old_free), 0);
  EXPECT_TRUE(old_alloc == A::allocate && old_realloc == A::reallocate && old_free == A::release);
  signal<V> on_heap{1, 2};
  EXPECT_NE(on_heap.data, A::block.data());
}

TYPED_TEST(Frame, CachesAreReleasedInOrderUpToTheFirstFailure) {
  using V = TypeParam;
  static std::vector<int> released;
  released.clear();
  register_cache<V>(cache::dct, []() noexcept { return released.push_back(3), ok; });
  register_cache<V>(cache::fir, []() noexcept { return released.push_back(0), ok; });
  EXPECT_EQ(TWIN(_free_internal)(), 0);
  register_cache<V>(cache::fir, []() noexcept { return released.push_back(-1), failed; });
  EXPECT_EQ(TWIN(_free_internal)(), -1);
  EXPECT_EQ(released, (std::vector{0, 3, -1}));
  register_cache<V>(cache::fir, nullptr);
  register_cache<V>(cache::dct, nullptr);
  EXPECT_EQ(TWIN(_free_internal)(), 0);
}

TYPED_TEST(Frame, VersionAndInitialisation) {
  using V = TypeParam;
  EXPECT_EQ(TWIN(_version)(), 201);
  EXPECT_EQ(TWIN(_lib_init)(), 0);
}

}  // namespace
}  // namespace sigpak::test
