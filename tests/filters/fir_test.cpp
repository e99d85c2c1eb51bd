// FIR filtering against the defining sum, in blocks, in place, and with allocations that fail.
#include <gtest/gtest.h>

#include <complex>

#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

using exact = std::complex<long double>;

template <record V> exact point(const V* v, index i) {
  if (v->complex == 0) return v->data[i];
  return {v->data[2 * i], v->data[2 * i + 1]};
}

// The defining sum; samples before the block come from the history, right-aligned.
template <record V> std::vector<exact> defined(const V* in, const V* taps, const V* history) {
  std::vector<exact> out;
  const index before = length(taps) - 1;
  for (index n = 0; n < length(in); ++n) {
    exact y = 0;
    for (index k = 0; k < length(taps); ++k) {
      const index j = n - k;
      if (j >= 0) y += point(taps, k) * point(in, j);
      if (j < 0 && history != nullptr) y += point(taps, k) * point(history, before + j);
    }
    out.push_back(y);
  }
  return out;
}

// No output can be larger: the sum of the magnitudes of the taps times the largest sample.
template <record V> double output_scale(const V* in, const V* taps) {
  long double gain = 0;
  long double largest = 1;
  for (index k = 0; k < length(taps); ++k) gain += std::abs(point(taps, k));
  for (index n = 0; n < length(in); ++n) largest = std::max(largest, std::abs(point(in, n)));
  return static_cast<double>(gain * largest);
}

template <record V> double worst_error(const V* got, const std::vector<exact>& wanted) {
  EXPECT_EQ(length(got), static_cast<index>(wanted.size()));
  long double worst = 0;
  for (index n = 0; n < length(got); ++n) worst = std::max(worst, std::abs(point(got, n) - wanted[n]));
  return static_cast<double>(worst);
}

template <class V> class Fir : public testing::Test {
 protected:
  void TearDown() override { TWIN(_free_internal)(); }
};
TYPED_TEST_SUITE(Fir, records, record_names);

TYPED_TEST(Fir, DirectSumsMatchTheDefinitionInEveryForm) {
  using V = TypeParam;
  for (const int form : {0, 1, 2, 3}) {
    const bool in_complex = (form & 1) != 0;
    const bool taps_complex = (form & 2) != 0;
    for (const index count : {1, 2, 3, 8, 31, 45}) {
      const signal<V> taps(noise<V>(count * (taps_complex ? 2 : 1), 7), taps_complex);
      for (const index points : {0, 1, 2, 30, 31, 32, 44, 63, 64, 65, 128, 200}) {
        const signal<V> in(noise<V>(points * (in_complex ? 2 : 1), 3), in_complex);
        for (const bool streamed : {false, true}) {
          signal<V> history(noise<V>((count - 1) * (in_complex ? 2 : 1), 5), in_complex);
          const auto wanted = defined<V>(&in, &taps, streamed ? &history : nullptr);
          signal<V> out;
          ASSERT_EQ(TWIN(d_fir)(&in, &out, &taps, streamed ? &history : nullptr), 0);
          EXPECT_EQ(out.complex != 0, in_complex || taps_complex);
          EXPECT_LE(worst_error<V>(&out, wanted),
                    static_cast<double>(count + 1) * unit_roundoff<V> * output_scale<V>(&in, &taps))
              << count << " taps, " << points << " points, form " << form;
        }
      }
    }
  }
}

TYPED_TEST(Fir, FastConvolutionMatchesTheDefinition) {
  using V = TypeParam;
  for (const index count : {46, 61, 112, 200}) {
    const signal<V> taps(noise<V>(count, 11));
    for (const index points :
         {count - 1, count, index{255}, index{256}, index{257}, index{1000}, index{2100}, index{5000}}) {
      const signal<V> in(noise<V>(points, 13));
      for (const bool streamed : {false, true}) {
        signal<V> history(noise<V>(count - 1, 17));
        const auto wanted = defined<V>(&in, &taps, streamed ? &history : nullptr);
        signal<V> out;
        ASSERT_EQ(TWIN(d_fir)(&in, &out, &taps, streamed ? &history : nullptr), 0);
        EXPECT_LE(worst_error<V>(&out, wanted), 4 * unit_roundoff<V> * output_scale<V>(&in, &taps))
            << count << " taps, " << points << " points";
        EXPECT_EQ(out.delta, in.delta);
      }
    }
  }
}

// Filters `in` block by block with one history; the lengths of the blocks repeat.
template <record V>
samples<V> in_blocks(const signal<V>& in, const V* taps, const std::vector<index>& blocks) {
  samples<V> joined;
  signal<V> history;
  signal<V> out;
  const index w = width<V>(&in);
  index begin = 0;
  for (std::size_t b = 0; begin < length<V>(&in); b = (b + 1) % blocks.size()) {
    const index points = std::min(blocks[b], length<V>(&in) - begin);
    V block = in;
    block.alloc = 0;
    block.data = in.data + begin * w;
    block.points = static_cast<std::uint32_t>(points);
    EXPECT_EQ(TWIN(d_fir)(&block, &out, taps, &history), 0);
    const auto part = out.values();
    joined.insert(joined.end(), part.begin(), part.end());
    begin += points;
  }
  return joined;
}

TYPED_TEST(Fir, AnySplitGivesTheWholeToTheLastBitWhenSummedDirectly) {
  using V = TypeParam;
  for (const int form : {0, 1, 2, 3}) {
    const signal<V> in(noise<V>(1200, 23), (form & 1) != 0);
    const index count = form == 0 ? 45 : 80;
    const signal<V> taps(noise<V>(form >= 2 ? 2 * count : count, 29), (form & 2) != 0);
    signal<V> whole;
    ASSERT_EQ(TWIN(d_fir)(&in, &whole, &taps, nullptr), 0);
    for (const auto& blocks : std::vector<std::vector<index>>{{1}, {7}, {0, 3, 500}, {44, 45, 46}, {1000}}) {
      EXPECT_EQ(in_blocks<V>(in, &taps, blocks), whole.values()) << "form " << form;
    }
  }
}

TYPED_TEST(Fir, AnySplitGivesTheWholeWithinRoundingWhenTransformed) {
  using V = TypeParam;
  const signal<V> in(noise<V>(6000, 23));
  const signal<V> taps(noise<V>(112, 29));
  signal<V> whole;
  ASSERT_EQ(TWIN(d_fir)(&in, &whole, &taps, nullptr), 0);
  const double tolerance = 4 * unit_roundoff<V> * output_scale<V>(&in, &taps);
  for (const auto& blocks :
       std::vector<std::vector<index>>{{1}, {7}, {0, 3, 1500}, {110, 111, 112}, {1000}, {2500}}) {
    const auto joined = in_blocks<V>(in, &taps, blocks);
    for (index n = 0; n < 6000; ++n) {
      ASSERT_NEAR(static_cast<double>(joined[n]), static_cast<double>(whole.data[n]), tolerance) << n;
    }
  }
}

TYPED_TEST(Fir, HistoryTakesTheFormOfTheInputAndLeavesWithTheLastSamples) {
  using V = TypeParam;
  const signal<V> taps{1, 10, 100, 1000};
  struct {
    std::initializer_list<double> before;
    bool complex;
    double first;
  } const cases[] = {
      {{}, false, 5}, {{1}, false, 1005}, {{1, 2, 3, 4, 5}, false, 1235}, {{1, 9, 2, 9, 3, 9}, true, 1235}};
  for (const auto& c : cases) {
    for (const bool lent : {false, true}) {
      signal<V> history(c.before, c.complex);
      if (lent) history.lend();
      signal<V> in{5, 6};
      in.delta = 0.25;
      signal<V> out;
      ASSERT_EQ(TWIN(d_fir)(&in, &out, &taps, &history), 0);
      EXPECT_EQ(out.data[0], scalar<V>(c.first));
      EXPECT_EQ(history.points, 3U);
      EXPECT_EQ(history.complex, 0);
      EXPECT_EQ(history.delta, scalar<V>(0.25));
      EXPECT_EQ(history.data[1], 5);
      EXPECT_EQ(history.data[2], 6);
    }
  }
}

TYPED_TEST(Fir, InPlaceAndIntoTheTapsGiveTheSame) {
  using V = TypeParam;
  for (const index count : {3, 130}) {
    for (const bool complex_taps : {false, true}) {
      for (const bool lent : {false, true}) {
        const auto x = noise<V>(400, 31);
        const auto h = noise<V>(complex_taps ? 2 * count : count, 37);
        const signal<V> in(x);
        signal<V> taps(h, complex_taps);
        signal<V> apart;
        ASSERT_EQ(TWIN(d_fir)(&in, &apart, &taps, nullptr), 0);
        signal<V> in_place(x);
        if (lent) in_place.lend();
        ASSERT_EQ(TWIN(d_fir)(&in_place, &in_place, &taps, nullptr), 0);
        EXPECT_EQ(in_place.values(), apart.values());
        ASSERT_EQ(TWIN(d_fir)(&in, &taps, &taps, nullptr), 0);
        EXPECT_EQ(taps.values(), apart.values());
      }
    }
  }
}

TYPED_TEST(Fir, AnInfiniteSampleReachesOnlyTheOutputsThatSeeIt) {
  using V = TypeParam;
  for (const bool complex_taps : {false, true}) {
    const signal<V> taps(noise<V>(complex_taps ? 14 : 7, 41), complex_taps);
    for (const index at : {0, 3, 100, 299}) {
      signal<V> in(noise<V>(300, 43));
      in.data[at] = std::numeric_limits<scalar<V>>::infinity();
      signal<V> out;
      ASSERT_EQ(TWIN(d_fir)(&in, &out, &taps, nullptr), 0);
      for (index n = 0; n < 300; ++n) {
        const bool sees = n >= at && n < at + 7;
        EXPECT_EQ(std::isfinite(out.data[n * width<V>(&out)]), !sees) << n;
      }
    }
  }
}

TYPED_TEST(Fir, NoTapsCopyTheInput) {
  using V = TypeParam;
  const signal<V> in(noise<V>(10), true);
  const signal<V> none;
  signal<V> out{1};
  ASSERT_EQ(TWIN(d_fir)(&in, &out, &none, nullptr), 0);
  EXPECT_EQ(out.values(), in.values());
  ASSERT_EQ(TWIN(d_sfir)(&in, &out, &none, 0, 0, nullptr), 0);
  EXPECT_EQ(out.values(), in.values());
}

// The spectrum kept from an earlier call must be that of these taps, at this length.
TYPED_TEST(Fir, KeptSpectrumIsUsedOnlyForItsOwnTapsAndLength) {
  using V = TypeParam;
  const auto filtered = [](const signal<V>& taps, index points) {
    const signal<V> in(noise<V>(points, 47));
    signal<V> out;
    EXPECT_EQ(TWIN(d_fir)(&in, &out, &taps, nullptr), 0);
    return out.values();
  };
  const signal<V> first(noise<V>(120, 53));
  auto flipped = noise<V>(120, 53);
  flipped[119] = -flipped[119];
  const signal<V> second(flipped);
  signal<V> poisoned(noise<V>(120, 53));
  poisoned.data[5] = std::numeric_limits<scalar<V>>::quiet_NaN();
  std::vector<samples<V>> fresh;
  for (const auto* taps : {&first, &second}) {
    for (const index points : {120, 700, 3000}) {
      TWIN(_free_internal)();
      fresh.push_back(filtered(*taps, points));
    }
  }
  for (int round = 0; round < 2; ++round) {
    auto wanted = fresh.begin();
    for (const auto* taps : {&first, &second}) {
      for (const index points : {120, 700, 3000}) {
        EXPECT_EQ(filtered(*taps, points), *wanted++);
        EXPECT_TRUE(std::isnan(filtered(poisoned, points)[points - 1]));
      }
    }
  }
}

TYPED_TEST(Fir, ACallAfterAFailedAllocationIsRight) {
  using V = TypeParam;
  const signal<V> in(noise<V>(500, 59));
  const signal<V> short_taps(noise<V>(5, 61));
  const signal<V> long_taps(noise<V>(130, 61));
  for (const auto* taps : {&short_taps, &long_taps}) {
    TWIN(_free_internal)();
    signal<V> wanted;
    ASSERT_EQ(TWIN(d_fir)(&in, &wanted, taps, nullptr), 0);
    int failures = 0;
    for (int allowed = 0; allowed < 12; ++allowed) {
      for (const bool tables : {false, true}) {
        TWIN(_free_internal)();
        signal<V> out;
        signal<V> history;
        int got = 0;
        if (tables) {
          const failing_tables scope(allowed);
          got = TWIN(d_fir)(&in, &out, taps, &history);
        } else {
          const failing_records<V> scope(allowed);
          got = TWIN(d_fir)(&in, &out, taps, &history);
        }
        if (got == 0) continue;
        EXPECT_EQ(got, -1);
        ++failures;
        history.points = 0;
        ASSERT_EQ(TWIN(d_fir)(&in, &out, taps, &history), 0);
        EXPECT_EQ(out.values(), wanted.values());
      }
    }
    EXPECT_GE(failures, 2);
  }
}

TYPED_TEST(Fir, HalfOfTheTapsStandsForTheWholeFilter) {
  using V = TypeParam;
  for (const bool complex_in : {false, true}) {
    for (const bool complex_taps : {false, true}) {
      for (const index n : {1, 2, 7, 30, 31, 40}) {
        for (const int flags : {0, 1, 2, 3}) {
          const bool odd = (flags & 1) != 0;
          const bool antisymmetric = (flags & 2) != 0;
          const index w = complex_taps ? 2 : 1;
          const auto h = noise<V>(n * w, 67);
          samples<V> full = h;
          for (index k = odd ? n - 2 : n - 1; k >= 0; --k) {
            for (index part = 0; part < w; ++part)
              full.push_back(antisymmetric ? -h[k * w + part] : h[k * w + part]);
          }
          const signal<V> half(h, complex_taps);
          const signal<V> taps(full, complex_taps);
          const signal<V> in(noise<V>(200, 71), complex_in);
          signal<V> got_history{1, 2};
          signal<V> wanted_history{1, 2};
          signal<V> got;
          signal<V> wanted;
          ASSERT_EQ(TWIN(d_sfir)(&in, &got, &half, odd, antisymmetric, &got_history), 0);
          ASSERT_EQ(TWIN(d_fir)(&in, &wanted, &taps, &wanted_history), 0);
          ASSERT_EQ(got.points, wanted.points);
          const double tolerance = 4 * unit_roundoff<V> * output_scale<V>(&in, &taps);
          for (index i = 0; i < scalars<V>(&got); ++i) {
            ASSERT_NEAR(static_cast<double>(got.data[i]), static_cast<double>(wanted.data[i]), tolerance);
          }
          EXPECT_EQ(got_history.values(), wanted_history.values());
        }
      }
    }
  }
}

}  // namespace
}  // namespace sigpak::test
