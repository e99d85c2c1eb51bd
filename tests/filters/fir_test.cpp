// SPDX-License-Identifier: MIT
// FIR filtering against the defining sum, in blocks, in place, and with allocations that fail.
#include "filters/streamed.h"

namespace sigpak::test {
namespace {

using exact = std::complex<long double>;

template <record V> exact point(const V* v, index i) {
  const auto part = [v](index k) { return static_cast<long double>(v->data[k]); };
  return v->complex != 0 ? exact(part(2 * i), part(2 * i + 1)) : part(i);
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
  for (index n = 0; n < length(got); ++n)
    worst = std::max(worst, std::abs(point(got, n) - wanted[static_cast<std::size_t>(n)]));
  return static_cast<double>(worst);
}

template <class V> class Fir : public testing::Test {
 protected:
  void TearDown() override { TWIN(_free_internal)(); }
};
TYPED_TEST_SUITE(Fir, records, record_names);

// Sums of few taps are direct; many real ones are transformed. In place and into the taps the same comes out.
TYPED_TEST(Fir, OutputsAreTheDefiningSumsInEveryForm) {
  using V = TypeParam;
  for (const index count : {1, 2, 8, 21, 27, 31, 45, 46, 63, 64, 71, 72, 200, 400}) {
    auto lengths = count < 46 ? std::vector<index>{0, 1, 2, 30, 31, 32, 44, 63, 64, 65, 128, 200}
                              : std::vector<index>{count - 1, count, 255, 256, 257, 1000, 2100, 5000};
    if (count == 400) lengths = {11000};  // sections that go straight from the input to the output
    for (const int form : {0, 1, 2, 3}) {
      if (form == 1 && count >= 46) lengths.resize(count == 400 ? 0 : 4);
      const bool pairs = (form & 1) != 0;
      const auto taps = noisy<V>(count, (form & 2) != 0, 7);
      for (const index points : lengths) {
        const auto in = noisy<V>(points, pairs, 3);
        for (const bool streamed : {false, true}) {
          SCOPED_TRACE(testing::Message() << count << " taps, " << points << " points, form " << form);
          auto history = noisy<V>(count - 1, pairs, 5);
          V* const kept = streamed ? &history : nullptr;
          const auto wanted = defined<V>(&in, &taps, kept);
          signal<V> out;
          ASSERT_EQ(TWIN(d_fir)(&in, &out, &taps, kept), 0);
          ASSERT_EQ(out.complex != 0, form != 0);
          ASSERT_EQ(out.delta, in.delta);
          const auto roundings = static_cast<double>(form == 0 && count >= 46 ? 4 : count + 1);
          ASSERT_LE(worst_error<V>(&out, wanted), roundings * unit_roundoff<V> * output_scale<V>(&in, &taps));
          if (streamed) continue;
          auto in_place = noisy<V>(points, pairs, 3);
          if (form < 2) in_place.lend();
          ASSERT_EQ(TWIN(d_fir)(&in_place, &in_place, &taps, nullptr), 0);
          ASSERT_EQ(in_place.values(), out.values());
          auto into_taps = noisy<V>(count, (form & 2) != 0, 7);
          ASSERT_EQ(TWIN(d_fir)(&in, &into_taps, &into_taps, nullptr), 0);
          ASSERT_EQ(into_taps.values(), out.values());
        }
      }
    }
  }
}

// To the last bit where the sums are direct, as real ones of few taps and complex ones are.
TYPED_TEST(Fir, AnySplitGivesTheWhole) {
  using V = TypeParam;
  const std::pair<index, int> cases[] = {{45, 0}, {80, 1}, {80, 2}, {80, 3}, {72, 0}};
  for (const auto& [count, form] : cases) {
    const bool exactly = count != 72;
    const auto in = noisy<V>(exactly ? 1200 : 6000, (form & 1) != 0, 23);
    const auto taps = noisy<V>(count, (form & 2) != 0, 29);
    signal<V> whole;
    ASSERT_EQ(TWIN(d_fir)(&in, &whole, &taps, nullptr), 0);
    const double tolerance = exactly ? 0 : 4 * unit_roundoff<V> * output_scale<V>(&in, &taps);
    for (const auto& blocks : std::vector<std::vector<index>>{
             {1}, {7}, {0, 3, 500}, {44, 45, 46}, {70, 71, 72}, {1000}, {2500, 0, 1500}}) {
      signal<V> history;
      const auto joined = in_blocks<V>(
          in, blocks, [&](const V* block, V* out) { return TWIN(d_fir)(block, out, &taps, &history); });
      ASSERT_EQ(std::ssize(joined), scalars<V>(&whole));
      for (std::size_t n = 0; n < joined.size(); ++n) {
        ASSERT_NEAR(static_cast<double>(joined[n]), static_cast<double>(whole.data[n]), tolerance)
            << count << " taps, form " << form << ", " << n;
      }
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

// A block that goes through the transform, behind a history whose last sample is not finite.
TYPED_TEST(Fir, AHistoryThatIsNotFiniteReachesOnlyTheOutputsThatSeeIt) {
  using V = TypeParam;
  using T = scalar<V>;
  const signal<V> taps(noise<V>(200, 41));
  for (const T bad : {std::numeric_limits<T>::infinity(), std::numeric_limits<T>::quiet_NaN()}) {
    for (const index points : {200, 700, 10'000}) {
      for (const index at : {0, 100, 198}) {
        const signal<V> in(noise<V>(points, 43));
        signal<V> history(noise<V>(199, 47));
        history.data[at] = bad;
        signal<V> out;
        ASSERT_EQ(TWIN(d_fir)(&in, &out, &taps, &history), 0);
        for (index n = 0; n < points; ++n) {
          ASSERT_EQ(std::isfinite(out.data[n]), n > at) << points << ' ' << at << ' ' << n;
        }
        EXPECT_EQ(history.data[198], in.data[points - 1]);
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

// Taps far below the rounding of the first one count in their number, and none is equal to an infinite one.
TYPED_TEST(Fir, TapsThatDifferByLittleDoNotShareASpectrum) {
  using V = TypeParam;
  const signal<V> in(samples<V>(1000, 1));
  for (const double small : {5e-7, 4e-15, std::numeric_limits<double>::infinity()}) {
    signal<V> taps(samples<V>(200, 0));
    taps.data[0] = 1;
    signal<V> out;
    ASSERT_EQ(TWIN(d_fir)(&in, &out, &taps, nullptr), 0);
    for (const double h : {small, 0.0, small}) {
      std::fill_n(taps.data + 1, 199, static_cast<scalar<V>>(h));
      ASSERT_EQ(TWIN(d_fir)(&in, &out, &taps, nullptr), 0);
      const double wanted = 1 + 199 * h;
      if (std::isfinite(wanted)) {
        EXPECT_NEAR(static_cast<double>(out.data[999]), wanted, 4 * unit_roundoff<V>) << h;
      } else {
        EXPECT_FALSE(std::isfinite(out.data[999]));
      }
    }
  }
}

TYPED_TEST(Fir, HalfOfTheTapsStandsForTheWholeFilter) {
  using V = TypeParam;
  for (const int form : {0, 1, 2, 3}) {
    const auto in = noisy<V>(200, (form & 1) != 0, 71);
    for (const index n : {1, 2, 7, 30, 31, 40}) {
      for (const int flags : {0, 1, 2, 3}) {
        const bool odd = (flags & 1) != 0;
        const auto half = noisy<V>(n, (form & 2) != 0, 67);
        samples<V> full = half.values();
        const index w = width<V>(&half);
        for (index k = odd ? n - 2 : n - 1; k >= 0; --k) {
          for (index part = k * w; part < (k + 1) * w; ++part)
            full.push_back((flags & 2) != 0 ? -half.data[part] : half.data[part]);
        }
        const signal<V> taps(full, (form & 2) != 0);
        signal<V> got_history{1, 2};
        signal<V> wanted_history{1, 2};
        signal<V> got;
        signal<V> wanted;
        ASSERT_EQ(TWIN(d_sfir)(&in, &got, &half, odd, flags & 2, &got_history), 0);
        ASSERT_EQ(TWIN(d_fir)(&in, &wanted, &taps, &wanted_history), 0);
        std::vector<exact> points;
        for (index i = 0; i < length<V>(&wanted); ++i) points.push_back(point<V>(&wanted, i));
        ASSERT_LE(worst_error<V>(&got, points), 4 * unit_roundoff<V> * output_scale<V>(&in, &taps));
        ASSERT_EQ(got_history.values(), wanted_history.values());
      }
    }
  }
}

}  // namespace
}  // namespace sigpak::test
