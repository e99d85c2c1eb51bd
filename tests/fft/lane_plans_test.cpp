// The wide transforms on plain memory, at whatever level the suite runs.
#include <gtest/gtest.h>
#include <malloc.h>

#include "fft/plans/lane_plan.h"
#include "fft/wide_fft.h"
#include "spectral/reference.h"
#include "support/failing.h"

namespace sigpak::test {
namespace {

template <class V> class WideFft : public testing::Test {
 protected:
  // Fresh memory is full of huge numbers: what is read before it is written shows.
  void SetUp() override {
    mallopt(M_PERTURB, 0x80);
    kernels::release_wide_fft<scalar<V>>();
  }
  void TearDown() override { mallopt(M_PERTURB, 0); }
};
TYPED_TEST_SUITE(WideFft, records, record_names);

constexpr double error_limit = 1.0;
constexpr index longest = 1 << 17;

// The data start `offset` scalars behind the start of a block.
template <record V> samples<V> wide(const samples<V>& in, bool inverse, index offset) {
  samples<V> padded(in.size() + static_cast<std::size_t>(offset) + 1, scalar<V>(42));
  const auto first = padded.begin() + offset;
  std::copy(in.begin(), in.end(), first);
  EXPECT_EQ(kernels::wide_fft(padded.data() + offset, static_cast<index>(in.size() / 2), inverse), ok);
  for (auto at = padded.begin(); at != first; ++at) EXPECT_EQ(*at, 42);
  EXPECT_EQ(padded.back(), 42) << "nothing is written outside the data";
  return {first, padded.end() - 1};
}

TYPED_TEST(WideFft, FollowsTheDefinition) {
  using V = TypeParam;
  for (index n = 1; n <= longest; n *= 2) {
    if (!kernels::has_wide_fft<scalar<V>>(n)) continue;
    for (const bool inverse : {false, true}) {
      const auto in = noise<V>(2 * n, static_cast<unsigned>(n));
      const signal<V> v(in, true);
      const auto wanted = exact_transform(exact_points<V>(v), inverse);
      const signal<V> got(wide<V>(in, inverse, 0), true);
      EXPECT_LT(transform_error<V>(got, wanted, n), error_limit) << n << " inverse " << inverse;
    }
  }
}

template <record V> samples<V> wide_real(const samples<V>& in, index n, bool inverse, index offset) {
  samples<V> padded(static_cast<std::size_t>(offset + n + 3), scalar<V>(42));
  const auto first = padded.begin() + offset;
  std::copy(in.begin(), in.end(), first);
  EXPECT_EQ(kernels::wide_real_fft(padded.data() + offset, n, inverse), ok);
  for (auto at = padded.begin(); at != first; ++at) EXPECT_EQ(*at, 42);
  EXPECT_EQ(padded.back(), 42) << "nothing is written outside the data";
  return {first, first + (inverse ? n : n + 2)};
}

TYPED_TEST(WideFft, RealDataGiveTheirHalfSpectrumAndComeBack) {
  using V = TypeParam;
  for (index n = 2; n <= longest; n *= 2) {
    if (!kernels::has_wide_real_fft<scalar<V>>(n)) continue;
    const auto in = noise<V>(n, static_cast<unsigned>(n));
    auto wanted = exact_transform(exact_points<V>(signal<V>(in)), false);
    wanted.resize(static_cast<std::size_t>(n / 2 + 1));
    auto half = wide_real<V>(in, n, false, 0);
    EXPECT_LT(transform_error<V>(signal<V>(half, true), wanted, n), error_limit) << n;
    EXPECT_EQ(half[1], 0);
    EXPECT_EQ(half.back(), 0);
    half[1] = half.back() = 7;  // which the way back ignores
    const auto back = wide_real<V>(half, n, true, 0);
    EXPECT_LT(relative_l2(back, in), 8 * unit_roundoff<V>) << n;
    for (const index offset : {1, 2, 3, 5}) {
      EXPECT_EQ(wide_real<V>(half, n, true, offset), back) << n;
      kernels::release_wide_fft<scalar<V>>();
      half[1] = half.back() = 0;
      EXPECT_EQ(wide_real<V>(in, n, false, offset), half) << n;
    }
  }
}

TYPED_TEST(WideFft, BitsDependNeitherOnThePlaceNorOnRebuiltTables) {
  using V = TypeParam;
  for (index n = 2; n <= longest; n *= 2) {
    if (!kernels::has_wide_fft<scalar<V>>(n)) continue;
    for (const bool inverse : {false, true}) {
      const auto in = noise<V>(2 * n, 9);
      const auto wanted = wide<V>(in, inverse, 0);
      for (const index offset : {1, 2, 3, 5}) EXPECT_EQ(wide<V>(in, inverse, offset), wanted) << n;
      kernels::release_wide_fft<scalar<V>>();
      EXPECT_EQ(wide<V>(in, inverse, 0), wanted) << n;
    }
  }
}

// What the longest data take, on lengths of one run of outputs and of several.
class as_if_long {
 public:
  explicit as_if_long(bool streamed) { kernels::long_sizes = {0, 0, streamed ? 0 : PTRDIFF_MAX}; }
  ~as_if_long() { kernels::long_sizes = usual_; }
  as_if_long(const as_if_long&) = delete;
  as_if_long& operator=(const as_if_long&) = delete;

 private:
  kernels::fft_sizes usual_ = kernels::long_sizes;
};

TYPED_TEST(WideFft, LongTransformsFollowTheDefinitionAtAnyPlace) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const bool streamed : {false, true}) {
    const as_if_long sizes(streamed);
    kernels::release_wide_fft<T>();
    for (index n = 2048; n <= 1 << 15; n *= 2) {
      if (!kernels::has_wide_fft<T>(n)) continue;
      for (const bool inverse : {false, true}) {
        const auto in = noise<V>(2 * n, static_cast<unsigned>(n));
        const auto wanted = exact_transform(exact_points<V>(signal<V>(in, true)), inverse);
        const auto got = wide<V>(in, inverse, 0);
        EXPECT_LT(transform_error<V>(signal<V>(got, true), wanted, n), error_limit) << n << " " << inverse;
        for (index offset = 1; offset < 64 / static_cast<index>(sizeof(T)); ++offset) {
          EXPECT_EQ(wide<V>(in, inverse, offset), got) << n << " at " << offset;
        }
      }
    }
  }
  kernels::release_wide_fft<T>();
}

// Every length up to two groups of rows and columns, then products that need each radix and several passes.
std::vector<index> smooth_lengths() {
  std::vector<index> lengths;
  for (index n = 1; n <= 600; ++n) lengths.push_back(n);
  for (const index n : {1000, 1001, 1155, 2197, 4095, 4116, 6006, 9375, 10000, 14641, 19683, 32768, 100000}) {
    lengths.push_back(n);
  }
  return lengths;
}

TYPED_TEST(WideFft, LengthsWithSmallPrimeFactors) {
  using V = TypeParam;
  using T = scalar<V>;
  int covered = 0;
  for (const index n : smooth_lengths()) {
    if (!kernels::has_wide_dft<T>(n)) continue;
    ++covered;
    for (const bool inverse : {false, true}) {
      const auto in = noise<V>(2 * n, static_cast<unsigned>(n));
      const auto wanted = exact_transform(exact_points<V>(signal<V>(in, true)), inverse);
      samples<V> got(in.size() + 2, T(42));
      std::copy(in.begin(), in.end(), got.begin() + 1);
      ASSERT_EQ(kernels::wide_dft(got.data() + 1, n, inverse), ok);
      EXPECT_EQ(got.front(), 42);
      EXPECT_EQ(got.back(), 42);
      got = samples<V>(got.begin() + 1, got.end() - 1);
      EXPECT_LT(transform_error<V>(signal<V>(got, true), wanted, n), error_limit) << n << " " << inverse;
      if (n < 500) continue;
      kernels::release_wide_fft<T>();
      samples<V> again = in;
      ASSERT_EQ(kernels::wide_dft(again.data(), n, inverse), ok);
      EXPECT_EQ(again, got) << n;
    }
  }
  EXPECT_EQ(covered > 100, kernels::has_wide_fft<T>(1024));
}

// Every plan of a sweep is noted, and afterwards those are counted that need no memory any more.
TYPED_TEST(WideFft, PlansOfTheLastLengthsStay) {
  using T = scalar<TypeParam>;
  if (!kernels::has_wide_dft<T>(1000)) GTEST_SKIP();
  samples<TypeParam> x(2 * 1152000);
  const std::vector<index> lengths = {1152000, 480,     1125000, 1093500, 1080000,
                                      1048320, 1036800, 1024000, 1000000, 984150};
  std::vector<std::size_t> bytes;
  for (const index n : lengths) {
    const counting_tables tables;
    ASSERT_EQ(kernels::wide_dft(x.data(), n, false), ok);
    bytes.push_back(tables.bytes());
    EXPECT_GT(bytes.back(), static_cast<std::size_t>(n) * sizeof(T));
  }
  std::size_t kept = 0;
  std::size_t all = 0;
  bool gone = false;
  for (std::size_t i = lengths.size(); i-- > 0; all += bytes[i]) {
    const failing_tables none(0);
    const bool there = kernels::wide_dft(x.data(), lengths[i], true) == ok;
    EXPECT_TRUE(there || i + 1 < lengths.size());
    EXPECT_FALSE(there && gone) << "of two plans the one used earlier goes first";
    gone = !there;
    kept += there ? bytes[i] : 0;
  }
  EXPECT_LE(kept, std::max(bytes[0], bytes[2]) + (std::size_t{64} << 20));
  EXPECT_GT(kept, std::size_t{48} << 20);
  EXPECT_GT(all, kept);
  // A length stays while it is used.
  for (const index other : lengths) {
    ASSERT_EQ(kernels::wide_dft(x.data(), other, false), ok);
    const failing_tables none(other == lengths[0] ? 1 : 0);
    EXPECT_EQ(kernels::wide_dft(x.data(), index{1000}, false), ok) << other;
  }
}

TYPED_TEST(WideFft, LengthsWithLargePrimeFactorsAreLeftAlone) {
  using T = scalar<TypeParam>;
  for (const index n : {0, 1, 3, 17, 101, 289, 1003, 4099, 65537}) EXPECT_FALSE(kernels::has_wide_dft<T>(n));
}

}  // namespace
}  // namespace sigpak::test
