// SPDX-License-Identifier: MIT
// Samples at any times, against the definition with a spline solved in long double.
#include <numbers>

#include "filters/streamed.h"

namespace sigpak::test {
namespace {

using real = long double;

template <class V> class ResampleTimes : public testing::Test {
 protected:
  void TearDown() override { TWIN(_free_internal)(); }
};
TYPED_TEST_SUITE(ResampleTimes, records, record_names);

// The not-a-knot spline over 0, 1, 2, ..., its slopes by elimination with pivots.
class exact_spline {
 public:
  explicit exact_spline(std::vector<real> y) : y_(std::move(y)), s_(y_.size()) {
    const std::size_t n = y_.size();
    std::vector<std::vector<real>> a(n, std::vector<real>(n + 1));
    const auto chord = [this](std::size_t i) { return y_[i + 1] - y_[i]; };
    for (std::size_t i = 1; i + 1 < n; ++i) {
      a[i][i - 1] = a[i][i + 1] = 1;
      a[i][i] = 4;
      a[i][n] = 3 * (chord(i - 1) + chord(i));
    }
    a[0][0] = a[n - 1][n - 1] = 1;
    a[0][1] = a[n - 1][n - 2] = n == 3 ? 1 : 2;
    a[0][n] = n == 3 ? 2 * chord(0) : (5 * chord(0) + chord(1)) / 2;
    a[n - 1][n] = n == 3 ? 2 * chord(1) : (5 * chord(n - 2) + chord(n - 3)) / 2;
    for (std::size_t c = 0; c < n; ++c) {
      std::size_t best = c;
      for (std::size_t r = c; r < n; ++r) best = std::abs(a[r][c]) > std::abs(a[best][c]) ? r : best;
      std::swap(a[c], a[best]);
      for (std::size_t r = 0; r < n; ++r) {
        if (r == c || a[r][c] == 0) continue;
        const real factor = a[r][c] / a[c][c];
        for (std::size_t k = c; k <= n; ++k) a[r][k] -= factor * a[c][k];
      }
    }
    for (std::size_t i = 0; i < n; ++i) s_[i] = a[i][n] / a[i][i];
  }
  // 0 outside and at the last knot.
  real at(real x) const {
    if (!(x >= 0 && x < static_cast<real>(y_.size() - 1))) return 0;
    const auto j = static_cast<std::size_t>(x);
    const real v = x - static_cast<real>(j);
    const real d = y_[j + 1] - y_[j];
    return y_[j] + v * (s_[j] + v * (3 * d - 2 * s_[j] - s_[j + 1] + v * (s_[j] + s_[j + 1] - 2 * d)));
  }

 private:
  std::vector<real> y_;
  std::vector<real> s_;
};

template <record V> struct filter {
  filter(index points, index phases, unsigned seed) : taps(noise<V>(points, seed)) {
    taps.delta = scalar<V>(1.0 / static_cast<double>(phases));
  }
  signal<V> taps;
};

template <record V>
std::vector<std::complex<real>> defined(const V& in, const V& taps, const std::vector<real>& times, real s) {
  const exact_spline h(std::vector<real>(taps.data, taps.data + taps.points));
  const auto x = wide_points(in);
  const real phases = std::round(1 / static_cast<real>(taps.delta));
  std::vector<std::complex<real>> out;
  for (const real t : times) {
    std::complex<real> y = 0;
    for (std::size_t n = 0; n < x.size(); ++n) {
      y += x[n] * h.at((t - static_cast<real>(n)) / s * phases + static_cast<real>(taps.points / 2)) / s;
    }
    out.push_back(y);
  }
  return out;
}

template <record V>
void expect_near(const V& got, const std::vector<std::complex<real>>& wanted, double allowed) {
  const auto points = wide_points(got);
  ASSERT_EQ(points.size(), wanted.size());
  for (std::size_t k = 0; k < wanted.size(); ++k)
    ASSERT_LE(std::abs(points[k] - wanted[k]), static_cast<real>(allowed)) << k;
}

TYPED_TEST(ResampleTimes, RegularAndListedTimesFollowTheDefinition) {
  using V = TypeParam;
  for (const auto& [points, phases] : {std::pair{3, 1}, {5, 4}, {9, 2}, {33, 8}, {101, 7}, {257, 32}}) {
    const filter<V> f(points, phases, 3);
    const double noise_floor = 40 * unit_roundoff<V> * (points / phases + 2);
    for (const index n : {0, 1, 5, 60}) {
      for (const bool pairs : {false, true}) {
        SCOPED_TRACE(testing::Message() << points << " taps, " << phases << " phases, " << n << " samples");
        signal<V> in(noise<V>(pairs ? 2 * n : n, 5), pairs);
        in.delta = scalar<V>(0.5);
        for (const double step : {1.0, 0.3, 0.918, 0.0625}) {
          signal<V> out;
          ASSERT_EQ(TWIN(d_rsmp2)(&in, &out, &f.taps, nullptr, step, nullptr), 0);
          std::vector<real> times;
          for (index k = 0; static_cast<double>(k) * step < static_cast<double>(n) * (1 - 4e-15); ++k) {
            times.push_back(static_cast<real>(k) * static_cast<real>(step));
          }
          expect_near<V>(out, defined<V>(in, f.taps, times, 1), noise_floor);
          ASSERT_EQ(out.delta, static_cast<scalar<V>>(step * 0.5));
        }
        signal<dsp_vec> at{3.25, -1, 0, 29.9, 1e9, 4, 0.015625, -1e300, 12.125, 15};
        at.delta = 2;
        std::vector<real> times;
        for (const double t : at.values()) times.push_back(static_cast<real>(t) / 0.5L);
        const auto wanted = defined<V>(in, f.taps, times, 1);
        signal<V> out;
        ASSERT_EQ(TWIN(d_rsmp2)(&in, &out, &f.taps, &at, 1, nullptr), 0);
        expect_near<V>(out, wanted, noise_floor);
        ASSERT_EQ(out.delta, 2);
        ASSERT_EQ(TWIN(d_rsmp2)(&in, &in, &f.taps, &at, 1, nullptr), 0);
        ASSERT_TRUE(same_bits(in.values(), out.values()));
      }
    }
  }
  signal<dsp_vec> times{2, 1, 0.5};
  const signal<dsp_vec> x{1, 2, 4};
  const filter<dsp_vec> hat(5, 2, 9);
  signal<dsp_vec> out;
  ASSERT_EQ(dspd_rsmp2(&x, &out, &hat.taps, &times, 1, nullptr), 0);
  ASSERT_EQ(dspd_rsmp2(&x, &times, &hat.taps, &times, 1, nullptr), 0);
  EXPECT_EQ(times.values(), out.values());
}

// The table of the manual, and a stretched filter beside the same change of rate by whole numbers.
TYPED_TEST(ResampleTimes, TonesKeepTheirLevelAtAnyTime) {
  using V = TypeParam;
  const struct {
    double attenuation;
    int phases;
    double level;
  } cases[] = {{100, 16, -99.4}, {100, 32, -101}, {100, 64, -101}, {100, 128, -101},
               {120, 16, -109},  {120, 32, -120}, {120, 64, -121}, {120, 128, -121},
               {150, 16, -110},  {150, 32, -134}, {150, 64, -148}, {150, 128, -150}};
  const auto in = tone<V>(1200, 0.9);
  for (const auto& c : cases) {
    signal<V> taps;
    ASSERT_EQ(TWIN(c_rsmp)(&taps, c.phases, 1, scalar<V>(0.9), scalar<V>(c.attenuation)), 0);
    samples<dsp_vec> times;
    for (const double u : noise<dsp_vec>(2000, 21)) times.push_back(600 + 300 * u);
    const signal<dsp_vec> at(times);
    signal<V> out;
    ASSERT_EQ(TWIN(d_rsmp2)(&in, &out, &taps, &at, 1, nullptr), 0);
    double worst = 0;
    for (index k = 0; k < 2000; ++k) {
      const auto wanted = std::sin(std::numbers::pi_v<real> * 0.9L * static_cast<real>(at.data[k]));
      worst = std::fmax(worst, static_cast<double>(std::abs(static_cast<real>(out.data[k]) - wanted)));
    }
    EXPECT_LT(20 * std::log10(worst), is_double<V> ? c.level : std::fmax(c.level, -108.0))
        << c.attenuation << ' ' << c.phases;
  }
  signal<V> by_rate;
  signal<V> by_phase;
  ASSERT_EQ(TWIN(c_rsmp)(&by_rate, 3, 5, scalar<V>(0.8), 100), 0);
  ASSERT_EQ(TWIN(c_rsmp)(&by_phase, 32, 1, scalar<V>(0.8), 100), 0);
  const auto low = tone<V>(1200, 0.4);
  signal<V> a;
  signal<V> b;
  ASSERT_EQ(TWIN(d_rsmp)(&low, &a, &by_rate, 3, 5, nullptr), 0);
  ASSERT_EQ(TWIN(d_rsmp2)(&low, &b, &by_phase, nullptr, 5.0 / 3, nullptr), 0);
  ASSERT_EQ(a.points, b.points);
  for (index k = 180; k < 540; ++k) ASSERT_NEAR(a.data[k], b.data[k], 2e-5);
}

TYPED_TEST(ResampleTimes, AnySplitGivesTheSameBits) {
  using V = TypeParam;
  constexpr index n = 4000;
  const filter<V> f(801, 32, 11);
  samples<dsp_vec> times;
  double t = 0;
  for (const double u : noise<dsp_vec>(5000, 17)) times.push_back(t += 0.4 * (1 + u) * 2);
  const signal<dsp_vec> at(times);
  for (const bool pairs : {false, true}) {
    const auto in = noisy<V>(n, pairs, 13);
    for (const double step : {0.0, 1.0, 0.918273645, 0.4, 2.75, 17.1}) {  // none where times are listed
      SCOPED_TRACE(step);
      const auto run = [&](const std::vector<index>& blocks) {
        signal<V> state;
        index served = 0;
        index end = 0;
        const auto call = [&](const V* block, V* out) {
          if (step != 0) return TWIN(d_rsmp2)(block, out, &f.taps, nullptr, step, &state);
          if (block != nullptr) end += length(block);
          index due = served;
          while (due < 5000 && (block == nullptr || at.data[due] < static_cast<double>(end))) ++due;
          const dsp_vec now = part_of<dsp_vec>(at, served, due - served);
          const auto status = TWIN(d_rsmp2)(block, out, &f.taps, &now, 1, &state);
          served += length(out);
          return status;
        };
        const auto all = in_blocks<V>(in, blocks, call, true);
        EXPECT_EQ(state.points, 0U);
        return all;
      };
      expect_splits_alike(n, {1, 7, 50, 2048, 3000}, run);
      signal<V> whole;
      ASSERT_EQ(TWIN(d_rsmp2)(&in, &whole, &f.taps, step != 0 ? nullptr : &at, step != 0 ? step : 1, nullptr),
                0);
      ASSERT_TRUE(same_bits(run({n}), whole.values()));
    }
  }
}

// A weight of one sample at whole times: the output tells its own time exactly, however long the stream.
TYPED_TEST(ResampleTimes, TimesDoNotDrift) {
  using V = TypeParam;
  signal<V> pulse{0, 1, 0};
  const double step = 0.7071067811865476;
  constexpr index block = 65536;
  const signal<V> in(samples<V>(static_cast<std::size_t>(block), 1));
  signal<V> state;
  signal<V> out;
  index outputs = 0;
  for (int i = 0; i < 40; ++i) {
    ASSERT_EQ(TWIN(d_rsmp2)(&in, &out, &pulse, nullptr, step, &state), 0);
    outputs += length<V>(&out);
  }
  // Output k waits for the sample after it: k step < 40 blocks - 1, in whole numbers of 2^-53.
  __extension__ using wide = unsigned __int128;
  const auto unit = static_cast<wide>(static_cast<std::uint64_t>(step * 0x1p53));
  const wide end = static_cast<wide>(40 * block - 1) << 53;
  EXPECT_EQ(outputs, static_cast<index>((end + unit - 1) / unit));
}

TYPED_TEST(ResampleTimes, StepsMayChangeAndNothingIsLost) {
  using V = TypeParam;
  signal<V> taps;
  ASSERT_EQ(TWIN(c_rsmp)(&taps, 32, 1, scalar<V>(0.8), 80), 0);
  const auto in = tone<V>(6000, 0.2);
  signal<V> state;
  signal<V> out;
  double t = 0;
  index begin = 0;
  for (const double step : {1.0, 1.02, 1.5, 0.5, 0.75, 1.0}) {
    const V block = part_of<V>(in, begin, 1000);
    begin += 1000;
    ASSERT_EQ(TWIN(d_rsmp2)(&block, &out, &taps, nullptr, step, &state), 0);
    for (index k = 0; k < length<V>(&out); ++k, t += step) {
      if (t < 200 || step > 1) continue;
      ASSERT_NEAR(static_cast<double>(out.data[k]), std::sin(std::numbers::pi * 0.2 * t), 2e-4)
          << step << ' ' << k;
    }
  }
}

// A list may ask for what an earlier block held, as far back as the filter is long.
TYPED_TEST(ResampleTimes, ListsReachBack) {
  using V = TypeParam;
  const signal<V> in(noise<V>(300));
  const V first = part_of<V>(in, 0, 200);
  const V second = part_of<V>(in, 200, 100);
  const filter<V> f(33, 4, 3);
  const signal<dsp_vec> none;
  index served = 0;
  for (double t = 180; t <= 200; t += 0.125) {
    const signal<dsp_vec> at{t};
    signal<V> state;
    signal<V> out;
    signal<V> whole;
    ASSERT_EQ(TWIN(d_rsmp2)(&in, &whole, &f.taps, &at, 1, nullptr), 0);
    ASSERT_EQ(TWIN(d_rsmp2)(&first, &out, &f.taps, &none, 1, &state), 0);
    if (TWIN(d_rsmp2)(&second, &out, &f.taps, &at, 1, &state) != 0) {
      EXPECT_EQ(served, 0) << t;
      continue;
    }
    ++served;
    ASSERT_TRUE(same_bits(out.values(), whole.values())) << t;
  }
  EXPECT_GE(served, 8 * 4 + 1);
}

TYPED_TEST(ResampleTimes, Refusals) {
  using V = TypeParam;
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double inf = std::numeric_limits<double>::infinity();
  const signal<V> in(noise<V>(300));
  const filter<V> f(33, 4, 3);
  signal<V> out{7};
  for (const double step : {0.0, -1.0, nan, inf, 1e300, 1e-18, 1e-300}) {  // the last: endless outputs
    EXPECT_EQ(TWIN(d_rsmp2)(&in, &out, &f.taps, nullptr, step, nullptr), -1) << step;
  }
  for (const auto& [points, delta] :
       {std::pair{32, 0.25}, {1, 0.25}, {33, 0.3}, {33, 0.0}, {33, -0.25}, {33, nan}}) {
    filter<V> wrong(points, 4, 3);
    wrong.taps.delta = scalar<V>(delta);
    EXPECT_EQ(TWIN(d_rsmp2)(&in, &out, &wrong.taps, nullptr, 1, nullptr), -1) << delta;
  }
  const signal<dsp_vec> pair({1, 2}, true);
  const signal<dsp_vec> wild{1, inf};
  for (const dsp_vec* at : {static_cast<const dsp_vec*>(&pair), static_cast<const dsp_vec*>(&wild)}) {
    EXPECT_EQ(TWIN(d_rsmp2)(&in, &out, &f.taps, at, 1, nullptr), -1);
  }
  EXPECT_EQ(TWIN(d_rsmp2)(nullptr, &out, &f.taps, nullptr, 1, nullptr), -1);
  EXPECT_EQ(out.values(), samples<V>{7});
  signal<V> state;
  const signal<dsp_vec> first{1, 5, 290};
  const signal<dsp_vec> gone{1};
  const signal<dsp_vec> falling{299, 298};
  ASSERT_EQ(TWIN(d_rsmp2)(&in, &out, &f.taps, &first, 1, &state), 0);
  EXPECT_EQ(out.points, 3U);
  EXPECT_EQ(TWIN(d_rsmp2)(&in, &out, &f.taps, &gone, 1, &state), -1);
  EXPECT_EQ(TWIN(d_rsmp2)(&in, &out, &f.taps, &falling, 1, &state), -1);
  EXPECT_EQ(out.points, 3U);
}

}  // namespace
}  // namespace sigpak::test
