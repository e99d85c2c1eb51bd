// Hooks, the registry of caches, the version.
#include <gtest/gtest.h>

#include <array>

#include "core/frame.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Frame : public testing::Test {};
TYPED_TEST_SUITE(Frame, records, record_names);

template <class V> struct arena {
  static inline std::array<scalar<V>, 64> block;
  static inline int allocations = 0;
  static inline int reallocations = 0;
  static inline int releases = 0;
  static inline std::uint32_t old_points = 0;
  static inline std::int32_t old_complex = 0;
  static std::int32_t allocate(V* v) { return ++allocations, v->data = block.data(), -5; }
  static std::int32_t reallocate(V* v, std::uint32_t points, std::int32_t complex) {
    ++reallocations;
    old_points = points;
    old_complex = complex;
    v->data = block.data();
    return -5;
  }
  static std::int32_t release(V* v) { return ++releases, v->data = nullptr, -5; }
};

TYPED_TEST(Frame, HooksReplaceTheHeapAndReportTheOneBefore) {
  using V = TypeParam;
  using A = arena<V>;
  auto old_alloc = &A::allocate;
  auto old_realloc = &A::reallocate;
  auto old_free = &A::release;
  EXPECT_EQ(TWIN(_lib_alloc)(A::allocate, &old_alloc), 0);
  EXPECT_EQ(TWIN(_lib_realloc)(A::reallocate, &old_realloc), 0);
  EXPECT_EQ(TWIN(_lib_free)(A::release, &old_free), 0);
  EXPECT_EQ(old_alloc, nullptr);
  EXPECT_EQ(old_realloc, nullptr);
  EXPECT_EQ(old_free, nullptr);

  V v;
  TWIN(_init)(&v);
  v.points = 4;
  EXPECT_EQ(TWIN(_alloc)(&v), 0);
  EXPECT_EQ(v.alloc, 4);
  v.complex = 1;
  EXPECT_EQ(TWIN(_realloc)(&v, 4, 0), 0);
  EXPECT_EQ(v.alloc, 8);
  EXPECT_EQ(A::old_points, 4U);
  EXPECT_EQ(A::old_complex, 0);
  EXPECT_EQ(TWIN(_destroy)(&v), 0);
  EXPECT_EQ(A::allocations, 1);
  EXPECT_EQ(A::reallocations, 1);
  EXPECT_EQ(A::releases, 1);

  EXPECT_EQ(TWIN(_lib_alloc)(nullptr, &old_alloc), 0);
  EXPECT_EQ(TWIN(_lib_realloc)(nullptr, nullptr), 0);
  EXPECT_EQ(TWIN(_lib_free)(nullptr, nullptr), 0);
  EXPECT_EQ(old_alloc, &A::allocate);
  signal<V> on_heap{1, 2};
  EXPECT_NE(on_heap.data, A::block.data());
  EXPECT_EQ(A::allocations, 1);
}

TEST(FrameOfBoth, HooksOfOnePrecisionLeaveTheOtherAlone) {
  dsp_lib_alloc(arena<dsp_vec>::allocate, nullptr);
  signal<dspf_vec> v{1, 2};
  EXPECT_EQ(v.values(), (samples<dspf_vec>{1, 2}));
  dsp_lib_alloc(nullptr, nullptr);
}

TYPED_TEST(Frame, CachesAreReleasedInOrderUpToTheFirstFailure) {
  using V = TypeParam;
  static std::vector<int> released;
  EXPECT_EQ(TWIN(_free_internal)(), 0);
  register_cache<V>(cache::dct, []() noexcept { return released.push_back(3), ok; });
  register_cache<V>(cache::fir, []() noexcept { return released.push_back(0), ok; });
  EXPECT_EQ(TWIN(_free_internal)(), 0);
  EXPECT_EQ(released, (std::vector{0, 3}));
  register_cache<V>(cache::fir, []() noexcept { return released.push_back(-1), failed; });
  EXPECT_EQ(TWIN(_free_internal)(), -1);
  EXPECT_EQ(released, (std::vector{0, 3, -1}));
  register_cache<V>(cache::fir, nullptr);
  register_cache<V>(cache::dct, nullptr);
  EXPECT_EQ(TWIN(_free_internal)(), 0);
  released.clear();
}

TEST(FrameOfBoth, VersionAndInitialisation) {
  EXPECT_EQ(dsp_version(), 201);
  EXPECT_EQ(dspf_version(), 201);
  EXPECT_EQ(dsp_lib_init(), 0);
  EXPECT_EQ(dspf_lib_init(), 0);
}

}  // namespace
}  // namespace sigpak::test
