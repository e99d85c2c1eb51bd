// SPDX-License-Identifier: MIT
// The wide chirp transform on plain memory, at whatever level the suite runs.
#include <gtest/gtest.h>
#include <malloc.h>

#include <array>
#include <set>

#include "core/isa.h"
#include "core/machine.h"
#include "fft/plans/circle.h"
#include "fft/transform.h"
#include "fft/wide/kernels.h"
#include "spectral/reference.h"
#include "support/failing.h"
#include "support/fence.h"
#include "vectors/levels.h"

namespace sigpak::test {
namespace {

template <class V> class WideChirp : public testing::Test {
 protected:
  // Fresh memory is full of huge numbers: what is read before it is written shows.
  void SetUp() override {
    if (isa::current() == isa::level::baseline) GTEST_SKIP();
    mallopt(M_PERTURB, 0x80);
    release();
  }
  void TearDown() override {
    release();
    mallopt(M_PERTURB, 0);
  }
  static void release() { ASSERT_EQ(TWIN(_free_internal)(), 0); }

  // In one round, and with caches so small that two are made of the same lengths: body(rounds).
  template <class Body> static void in_rounds(const Body& body) {
    const machine::cache_sizes usual = machine::caches();
    machine::cache_sizes large = usual;
    machine::cache_sizes small = usual;
    large.second = index{1} << 30;
    small.second = machine::way_bytes + 1;
    for (const auto& forced : {large, small}) {
      release();
      machine::force(forced);
      body(forced.second == small.second ? 2 : 1);
    }
    release();
    machine::force(usual);
  }
};
TYPED_TEST_SUITE(WideChirp, records, record_names);

constexpr double error_limit = 1.5;

template <record V> samples<V> chirped(const samples<V>& in, bool inverse, index offset) {
  const index room = std::ssize(in);
  return run_fenced<V>(in, room, offset, [=](auto* x) { return transform(x, room / 2, inverse); });
}

// What a transform is made of: its lanes, and which radix stands where.
template <class T> std::set<std::array<int, 2>> parts_of(index points, int widest, int narrowest) {
  kernels::chirp_plan<T> plan = {};
  kernels::choose_circle(plan, points, widest, narrowest);
  EXPECT_GE(plan.circle, points);
  index vectors = 1;
  std::set<std::array<int, 2>> parts = {{100, plan.lanes}};
  for (int pass = 0; pass < plan.passes; ++pass) {
    const int place = pass == 0 ? 200 : pass == plan.passes - 1 ? 300 + plan.lanes : 400;
    parts.insert({place, plan.radix[pass]});
    vectors *= plan.radix[pass];
  }
  EXPECT_EQ(vectors * plan.lanes / 2, plan.circle);
  return parts;
}

// All short lengths, and of the longer ones those with a part that no shorter one has.
template <class T> std::vector<index> telling_lengths(int rounds) {
  const auto& table = *at_level<kernels::chirp_kernels<T>>();
  std::vector<index> lengths;
  std::set<std::array<int, 2>> seen;
  for (index n = 3; n <= 20000; n += n / 50 + 1) {
    const algorithm chosen = algorithm_for<T>(n);
    if (chosen != algorithm::chirp && chosen != algorithm::direct) continue;
    const std::size_t before = seen.size();
    seen.merge(parts_of<T>((n + rounds - 1) / rounds, table.widest_lanes, table.narrowest_lanes));
    if (n <= 150 || seen.size() > before) lengths.push_back(n);
  }
  lengths.insert(lengths.end(), {523, 1009, 4099});
  if (rounds == 1) lengths.insert(lengths.end(), {8198, 20011});
  return lengths;
}

TYPED_TEST(WideChirp, FollowsTheDefinition) {
  using V = TypeParam;
  this->in_rounds([](int rounds) {
    for (const index n : telling_lengths<scalar<V>>(rounds)) {
      for (const bool inverse : {false, true}) {
        if (n > 600 && inverse == (n % 2 == 0)) continue;  // one of the two where the reference takes long
        const auto in = noise<V>(2 * n, static_cast<unsigned>(n));
        const auto wanted = exact_transform(exact_points<V>(signal<V>(in, true)), inverse);
        const signal<V> got(chirped<V>(in, inverse, 0), true);
        EXPECT_LT(transform_error<V>(got, wanted, n), error_limit)
            << n << " inverse " << inverse << " rounds " << rounds;
      }
    }
  });
}

// Every pass that there is, so that none is kept for nothing, at one level or another.
TYPED_TEST(WideChirp, LengthsReachEveryRadix) {
  using T = scalar<TypeParam>;
  std::set<std::array<int, 2>> seen;
  for (const int lanes : {4, 8, 16}) {
    for (index n = 3; n < 200000; n += n / 50 + 1) seen.merge(parts_of<T>(n, lanes, lanes));
    for (const int core : {std::max(lanes / 2, 4), std::max(lanes, 8)}) {
      EXPECT_TRUE(seen.contains({300 + lanes, core})) << core;
    }
  }
  for (const int outer : {1, 3, 4, 5, 8}) EXPECT_TRUE(seen.contains({200, outer})) << outer;
  for (const int inner : {3, 4, 5, 6, 7, 8, 10, 12}) EXPECT_TRUE(seen.contains({400, inner})) << inner;
}

TYPED_TEST(WideChirp, BitsDependNeitherOnThePlaceNorOnOtherCalls) {
  using V = TypeParam;
  this->in_rounds([this](int) {
    for (const index n : {3, 11, 34, 37, 523, 4099}) {
      for (const bool inverse : {false, true}) {
        const auto in = noise<V>(2 * n, 9);
        const auto wanted = chirped<V>(in, inverse, 0);
        for (const index offset : {1, 2, 3, 5}) EXPECT_EQ(chirped<V>(in, inverse, offset), wanted) << n;
        chirped<V>(noise<V>(2 * n), !inverse, 0);
        EXPECT_EQ(chirped<V>(in, inverse, 0), wanted) << n;
        for (const index other : {n + 1, n + 2}) chirped<V>(noise<V>(2 * other), inverse, 0);
        EXPECT_EQ(chirped<V>(in, inverse, 0), wanted) << n;
        this->release();
        EXPECT_EQ(chirped<V>(in, inverse, 0), wanted) << n;
      }
    }
  });
}

TYPED_TEST(WideChirp, FailuresLeaveTheDataAndNoTables) {
  using V = TypeParam;
  const auto in = noise<V>(2 * 1009);
  this->in_rounds([&in](int) {
    const auto wanted = chirped<V>(in, false, 0);
    int allowed = 0;
    for (bool done = false; !done; ++allowed) {
      TestFixture::release();
      auto x = in;
      {
        const failing_tables rest(allowed);
        done = transform(x.data(), index{1009}, false) == ok;
      }
      EXPECT_EQ(x, done ? wanted : in);
      EXPECT_EQ(chirped<V>(in, false, 0), wanted);
    }
    EXPECT_GT(allowed, 2);
  });
}

}  // namespace
}  // namespace sigpak::test
