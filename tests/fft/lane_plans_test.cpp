// SPDX-License-Identifier: MIT
// The wide transforms on plain memory, at whatever level the suite runs.
#include <gtest/gtest.h>
#include <malloc.h>

#include <functional>
#include <limits>
#include <numeric>
#include <set>

#include "core/machine.h"
#include "core/recent_list.h"
#include "fft/plans/lane_plan.h"
#include "fft/transform.h"
#include "fft/wide/kernels.h"
#include "spectral/reference.h"
#include "support/failing.h"
#include "support/fence.h"
#include "vectors/levels.h"

namespace sigpak::test {
namespace {

template <class V> class WideFft : public testing::Test {
 protected:
  // Fresh memory is full of huge numbers: what is read before it is written shows.
  void SetUp() override {
    mallopt(M_PERTURB, 0x80);
    ASSERT_EQ(TWIN(_free_internal)(), 0);
  }
  void TearDown() override { mallopt(M_PERTURB, 0); }
};
TYPED_TEST_SUITE(WideFft, records, record_names);

constexpr double error_limit = 1.0;
constexpr index longest = 1 << 17;

template <class T> bool is_wide(index points) {
  const algorithm chosen = algorithm_for<T>(points);
  return chosen == algorithm::small || chosen == algorithm::lanes;
}

template <record V> samples<V> wide(const samples<V>& in, bool inverse, index offset) {
  const index room = std::ssize(in);
  return run_fenced<V>(in, room, offset, [=](auto* x) { return transform(x, room / 2, inverse); });
}

TYPED_TEST(WideFft, FollowsTheDefinition) {
  using V = TypeParam;
  for (index n = 1; n <= longest; n *= 2) {
    if (!is_wide<scalar<V>>(n)) continue;
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
  samples<V> out = run_fenced<V>(in, n + 2, offset,
                                 [=](auto* x) { return inverse ? inverse_real(x, n) : forward_real(x, n); });
  if (inverse) out.resize(static_cast<std::size_t>(n));
  return out;
}

// To the half spectrum and back, with the same bits at any place.
template <record V> void expect_real_transforms(index n) {
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
    ASSERT_EQ(TWIN(_free_internal)(), 0);
    half[1] = half.back() = 0;
    EXPECT_EQ(wide_real<V>(in, n, false, offset), half) << n;
  }
  samples<V> to(half.size());
  ASSERT_EQ(forward_real_apart(in.data(), to.data(), n), ok);
  EXPECT_EQ(to, half) << n;
  samples<V> reals(in.size());
  ASSERT_EQ(inverse_real_apart(to.data(), reals.data(), n), ok);
  EXPECT_EQ(reals, back) << n;
}

TYPED_TEST(WideFft, RealDataGiveTheirHalfSpectrumAndComeBack) {
  using V = TypeParam;
  for (index n = 2; n <= longest; n *= 2) {
    if (is_wide<scalar<V>>(n)) expect_real_transforms<V>(n);
  }
}

TYPED_TEST(WideFft, BitsDependNeitherOnThePlaceNorOnRebuiltTables) {
  using V = TypeParam;
  for (index n = 2; n <= longest; n *= 2) {
    if (!is_wide<scalar<V>>(n)) continue;
    for (const bool inverse : {false, true}) {
      const auto in = noise<V>(2 * n, 9);
      const auto wanted = wide<V>(in, inverse, 0);
      for (const index offset : {1, 2, 3, 5}) EXPECT_EQ(wide<V>(in, inverse, offset), wanted) << n;
      ASSERT_EQ(TWIN(_free_internal)(), 0);
      EXPECT_EQ(wide<V>(in, inverse, 0), wanted) << n;
    }
  }
}

// Plans made for a machine with these caches, until the end of its scope.
template <class V> class on_machine {
 public:
  explicit on_machine(const machine::cache_sizes& caches) {
    TWIN(_free_internal)();
    machine::force(caches);
  }
  ~on_machine() {
    TWIN(_free_internal)();
    machine::force(usual_);
  }
  on_machine(const on_machine&) = delete;
  on_machine& operator=(const on_machine&) = delete;

 private:
  machine::cache_sizes usual_ = machine::caches();
};

template <record V> int widest_lanes() { return at_level<kernels::fft_kernels<scalar<V>>>()->widest_lanes; }

// In kilobytes: as small as may be, a laptop, one of few ways and hardly a second cache, larger than all data
// here.
constexpr machine::cache_sizes in_kilobytes(index first, index ways, index second) {
  return {.first = first << 10, .first_ways = ways, .second = second << 10, .last = second << 12};
}
constexpr machine::cache_sizes machines[] = {in_kilobytes(5, 1, 6), in_kilobytes(32, 8, 256),
                                             in_kilobytes(64, 2, 66),
                                             in_kilobytes(index{1} << 20, 64, index{1} << 21)};

TYPED_TEST(WideFft, EveryMachineChoosesRadicesOfTheLength) {
  using V = TypeParam;
  for (const auto& caches : machines) {
    const on_machine<V> forced(caches);
    for (const int lanes : {4, 8, 16}) {
      for (index n = index{lanes} * lanes; n <= index{1} << 28; n *= 2) {
        const auto choice = kernels::choose_lanes<scalar<V>>(n, lanes);
        const auto& list = choice.radices;
        EXPECT_EQ(n / lanes,
                  std::accumulate(list.radix, list.radix + list.passes, index{1}, std::multiplies()));
        EXPECT_GT(list.radix[list.passes - 1], 2) << n;
        for (const kernels::course way : {choice.at_line, choice.elsewhere}) {
          EXPECT_TRUE(way != kernels::course::in_place || kernels::pairs_columns(list, lanes)) << n;
          EXPECT_TRUE(way != kernels::course::by_blocks || list.radix[0] == lanes) << n;
        }
      }
    }
  }
}

TYPED_TEST(WideFft, EveryMachineTransformsRightAtAnyPlace) {
  using V = TypeParam;
  using T = scalar<V>;
  if (!is_wide<T>(2048)) GTEST_SKIP();
  std::set<kernels::course> met;
  for (index n = 1024; n <= 1 << 15; n *= 2) {
    for (const bool inverse : {false, true}) {
      const auto in = noise<V>(2 * n, static_cast<unsigned>(n));
      const auto wanted = exact_transform(exact_points<V>(signal<V>(in, true)), inverse);
      for (const auto& caches : machines) {
        const on_machine<V> forced(caches);
        const auto got = wide<V>(in, inverse, 0);
        EXPECT_LT(transform_error<V>(signal<V>(got, true), wanted, n), error_limit) << n << " " << inverse;
        for (index offset = 1; offset < 64 / static_cast<index>(sizeof(T)); ++offset) {
          EXPECT_EQ(wide<V>(in, inverse, offset), got) << n << " at " << offset;
        }
        const auto choice = kernels::choose_lanes<T>(n, widest_lanes<V>());
        met.insert({choice.at_line, choice.elsewhere});
      }
    }
  }
  EXPECT_EQ(met.size(), 4U) << "every course is tested";
}

TYPED_TEST(WideFft, EveryMachineTransformsRealDataAndSmoothLengths) {
  using V = TypeParam;
  if (!is_wide<scalar<V>>(2048)) GTEST_SKIP();
  std::set<bool> by_half;
  for (const auto& caches : machines) {
    const on_machine<V> forced(caches);
    for (const index n : {2048, 8192, 32768}) {
      expect_real_transforms<V>(n);
      by_half.insert(kernels::make_half_plan<scalar<V>>(n, widest_lanes<V>())->suits_forward);
    }
    for (const index n : {1000, 2000, 4000, 6006, 8000, 10000}) {
      const auto in = noise<V>(2 * n, static_cast<unsigned>(n));
      const auto wanted = exact_transform(exact_points<V>(signal<V>(in, true)), false);
      EXPECT_LT(transform_error<V>(signal<V>(wide<V>(in, false, 1), true), wanted, n), error_limit) << n;
    }
  }
  EXPECT_EQ(by_half.size(), 2U) << "both ways are tested";
}

// Every length up to two groups of rows and columns, then products that need each radix and several passes.
std::vector<index> smooth_lengths() {
  std::vector<index> lengths;
  for (index n = 1; n <= 600; ++n) lengths.push_back(n);
  for (const index n : {1000, 1001, 1155, 1331, 2032,  2197,  2744,  3375,  4095,  4116,  4913,
                        6006, 8000, 9375, 9976, 10000, 14641, 15625, 19683, 32768, 83521, 100000}) {
    lengths.push_back(n);
  }
  return lengths;
}

bool is_smooth(algorithm chosen) {
  return chosen == algorithm::coprime || chosen == algorithm::direct || chosen == algorithm::product ||
         chosen == algorithm::square || chosen == algorithm::mixed;
}

// Prime factors up to 127 are small.
TYPED_TEST(WideFft, LengthsWithSmallPrimeFactors) {
  using V = TypeParam;
  using T = scalar<V>;
  int covered = 0;
  for (const index n : smooth_lengths()) {
    const algorithm chosen = algorithm_for<T>(n);
    if (!is_smooth(chosen)) continue;
    ++covered;
    for (const bool inverse : {false, true}) {
      const auto in = noise<V>(2 * n, static_cast<unsigned>(n));
      const auto got = wide<V>(in, inverse, 1);
      if (!watched()) {
        const auto wanted = exact_transform(exact_points<V>(signal<V>(in, true)), inverse);
        const double limit = chosen == algorithm::direct ? 1.5 : error_limit;  // long sums
        EXPECT_LT(transform_error<V>(signal<V>(got, true), wanted, n), limit) << n << " " << inverse;
      }
      if (n < 500) continue;
      ASSERT_EQ(TWIN(_free_internal)(), 0);
      samples<V> again = in;
      ASSERT_EQ(transform(again.data(), n, inverse), ok);
      EXPECT_EQ(again, got) << n;
    }
  }
  EXPECT_EQ(covered > 100, is_wide<T>(1024));
}

// All factors whose squares there are, at lengths too short to be worth them. Caches that hold no data allow
// fewer lanes too.
TYPED_TEST(WideFft, LengthsWithSquareFactors) {
  using V = TypeParam;
  using T = scalar<V>;
  const auto* const table = at_level<kernels::product_kernels<T>>();
  if (table == nullptr) GTEST_SKIP();
  const on_machine<V> forced(machines[0]);
  std::set<int> factors;
  for (const index n : {4480, 5040, 5600, 5880, 8192, 14000, 14336}) {
    if (!kernels::has_square_plan<T>(n)) continue;
    recent_list plans(index{1} << 24);
    const auto* const plan = kernels::make_square_plan<T>(plans, n);
    ASSERT_NE(plan, nullptr);
    factors.insert(plan->block.radix[0]);
    samples<V> scratch(static_cast<std::size_t>(scratch_of(*plan)));
    for (const bool inverse : {false, true}) {
      const auto in = noise<V>(2 * n, static_cast<unsigned>(n));
      const auto wanted = exact_transform(exact_points<V>(signal<V>(in, true)), inverse);
      const auto got = run_fenced<V>(in, 2 * n, 1, [&](T* x) {
        table->run_square(*plan, x, scratch.data(), inverse);
        return ok;
      });
      EXPECT_LT(transform_error<V>(signal<V>(got, true), wanted, n), error_limit) << n << " " << inverse;
    }
    plans.release();
  }
  EXPECT_EQ(factors.size(), table->narrowest_lanes == 4 ? 6U : 4U);
}

// Of an impulse, whose sums are exact, every bin is its height over N, rounded once.
TYPED_TEST(WideFft, ScalesToTheLastDigit) {
  using V = TypeParam;
  using T = scalar<V>;
  std::vector<index> lengths = {3, 6, 9, 12};
  if constexpr (sizeof(T) == sizeof(float)) lengths = {3, 12, 17, 30, 34, 35, 51, 120, 125, 272, 1000, 2000};
  for (const index n : lengths) {
    if (!is_smooth(algorithm_for<T>(n))) continue;
    for (const T height : noise<V>(32)) {
      samples<V> x(static_cast<std::size_t>(2 * n));
      x[0] = height;
      ASSERT_EQ(transform(x.data(), n, false), ok);
      for (std::size_t i = 0; i < x.size(); i += 2)
        ASSERT_EQ(x[i], height / static_cast<T>(n)) << n << ' ' << i;
    }
  }
}

// Where they are not made in double.
// Errors of constants, of which the scale is one, are the same at every point: they must not add up.
TYPED_TEST(WideFft, ResultsAreAsLargeAsTheyShouldBe) {
  using V = TypeParam;
  if (!is_wide<scalar<V>>(2048)) GTEST_SKIP();
  for (const index n : {144, 432, 1280, 13122}) {
    for (const bool inverse : {false, true}) {
      long double error = 0;
      long double total = 0;
      for (unsigned seed = 0; seed < (n < 2000 ? 6 : 1); ++seed) {
        const auto in = noise<V>(2 * n, seed);
        const auto wanted = exact_transform(exact_points<V>(signal<V>(in, true)), inverse);
        const auto got = exact_points<V>(signal<V>(wide<V>(in, inverse, 0), true));
        for (std::size_t k = 0; k < wanted.size(); ++k) {
          error += std::real(std::conj(wanted[k]) * (got[k] - wanted[k]));
          total += std::norm(wanted[k]);
        }
      }
      EXPECT_LT(std::abs(error / total), 0.9 * unit_roundoff<V>) << n << " inverse " << inverse;
    }
  }
}

TYPED_TEST(WideFft, SumsBeyondTheRangeAreInfinite) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : {3, 6, 9, 12, 36, 120, 125, 1000, 2000}) {
    if (!is_smooth(algorithm_for<T>(n))) continue;
    for (const bool inverse : {false, true}) {
      samples<V> x(static_cast<std::size_t>(2 * n));
      for (std::size_t i = 0; i < x.size(); i += 2) x[i] = -std::numeric_limits<T>::max();
      ASSERT_EQ(transform(x.data(), n, inverse), ok);
      EXPECT_LE(x[0], -std::numeric_limits<T>::max()) << n;
      EXPECT_TRUE(n < 36 || std::isinf(x[0])) << n;
    }
  }
}

// Every plan of a sweep is noted, and afterwards those are counted that need no memory any more. Large caches
// make large plans.
TYPED_TEST(WideFft, PlansOfTheLastLengthsStay) {
  using T = scalar<TypeParam>;
  if (!is_smooth(algorithm_for<T>(1000))) GTEST_SKIP();
  const on_machine<TypeParam> forced(machines[3]);
  samples<TypeParam> x(2 * 1152000);
  const std::vector<index> lengths = {1152000, 600,     1125000, 1093500, 1080000,
                                      1048320, 1036800, 1024000, 1000000, 984150};
  std::vector<std::size_t> bytes;
  for (const index n : lengths) {
    const failing_tables tables(LONG_MAX);
    ASSERT_EQ(transform(x.data(), n, false), ok);
    bytes.push_back(tables.bytes());
    EXPECT_GT(bytes.back(), static_cast<std::size_t>(n) * sizeof(T));
  }
  std::size_t kept = 0;
  std::size_t all = 0;
  bool gone = false;
  for (std::size_t i = lengths.size(); i-- > 0; all += bytes[i]) {
    const failing_tables none(0);
    const bool there = transform(x.data(), lengths[i], true) == ok;
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
    ASSERT_EQ(transform(x.data(), other, false), ok);
    const failing_tables none(other == lengths[0] ? 1 : 0);
    EXPECT_EQ(transform(x.data(), index{1000}, false), ok) << other;
  }
}

TYPED_TEST(WideFft, LengthsWithLargePrimeFactorsAreLeftAlone) {
  using T = scalar<TypeParam>;
  for (const index n : {0, 1, 131, 404, 1048, 4099, 17161, 65537})
    EXPECT_FALSE(is_smooth(algorithm_for<T>(n))) << n;
}

}  // namespace
}  // namespace sigpak::test
