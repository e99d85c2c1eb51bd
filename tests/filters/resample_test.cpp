// SPDX-License-Identifier: MIT
// Ratios of whole numbers, and the taps for them, against their definitions and published results.
#include <complex>
#include <numbers>
#include <numeric>

#include "filters/streamed.h"

namespace sigpak::test {
namespace {

using real = long double;

template <class V> class Resample : public testing::Test {
 protected:
  void TearDown() override { TWIN(_free_internal)(); }
};
TYPED_TEST_SUITE(Resample, records, record_names);

// The definition, and the sum of magnitudes that bounds the rounding errors.
struct defined {
  std::vector<std::complex<real>> out;
  std::vector<real> scale;
};
template <record V> defined definition(const V& in, const V& taps, index up, index down) {
  const auto x = wide_points(in);
  defined d;
  for (index k = 0; k * down < std::ssize(x) * up; ++k) {
    std::complex<real> y = 0;
    real scale = 0;
    for (index j = 0; j < length(&taps); ++j) {
      const index place = k * down + (length(&taps) - 1) / 2 - j;
      if (place < 0 || place % up != 0 || place / up >= std::ssize(x)) continue;
      const auto sample = x[static_cast<std::size_t>(place / up)];
      y += static_cast<real>(taps.data[j]) * sample;
      scale += std::abs(static_cast<real>(taps.data[j]) * sample);
    }
    d.out.push_back(y);
    d.scale.push_back(scale);
  }
  return d;
}

struct rate {
  int up;
  int down;
  index taps;
};

TYPED_TEST(Resample, OutputsAreTheDefiningSums) {
  using V = TypeParam;
  const rate rates[] = {{1, 1, 1},       {1, 1, 40}, {2, 1, 33},  {3, 2, 61}, {2, 3, 50},
                        {1, 4, 70},      {5, 1, 3},  {7, 3, 4},   {1, 9, 2},  {160, 147, 500},
                        {147, 160, 900}, {40, 1, 7}, {1, 300, 5}, {4, 6, 25}};
  for (const rate& r : rates) {
    const auto taps = noisy<V>(r.taps, false, 3);
    for (const index n : {0, 1, 2, 7, 64, 700}) {
      for (const bool pairs : {false, true}) {
        SCOPED_TRACE(testing::Message()
                     << r.up << '/' << r.down << ", " << r.taps << " taps, " << n << " samples");
        auto in = noisy<V>(n, pairs, 5);
        in.delta = scalar<V>(0.5);
        const defined wanted = definition<V>(in, taps, r.up, r.down);
        signal<V> out;
        ASSERT_EQ(TWIN(d_rsmp)(&in, &out, &taps, r.up, r.down, nullptr), 0);
        const auto got = wide_points<V>(out);
        ASSERT_EQ(got.size(), wanted.out.size());
        ASSERT_NEAR(out.delta, 0.5 * r.down / r.up, 0.5 * unit_roundoff<V> * r.down / r.up);
        for (std::size_t k = 0; k < got.size(); ++k) {
          const real roundings = static_cast<real>(r.taps / r.up + 2) * static_cast<real>(unit_roundoff<V>);
          ASSERT_LE(std::abs(got[k] - wanted.out[k]), roundings * wanted.scale[k]) << k;
        }
        ASSERT_EQ(TWIN(d_rsmp)(&in, &in, &taps, r.up, r.down, nullptr), 0);
        ASSERT_TRUE(same_bits(in.values(), out.values()));
      }
    }
  }
}

TYPED_TEST(Resample, AnySplitGivesTheSameBits) {
  using V = TypeParam;
  const rate rates[] = {{1, 1, 40},        {2, 1, 163}, {1, 4, 651}, {3, 2, 301},
                        {2, 3, 33},        {1, 2, 1},   {7, 5, 3},   {160, 147, 9000},
                        {147, 160, 12001}, {1, 97, 2},  {97, 1, 50}, {5000, 4999, 70001}};
  for (const rate& r : rates) {
    const auto taps = noisy<V>(r.taps, false, 7);
    for (const bool pairs : {false, true}) {
      const index n = r.down < 100 ? 3000 : 7000;
      const auto in = noisy<V>(n, pairs, 11);
      const auto run = [&](const std::vector<index>& blocks) {
        signal<V> state;
        const auto call = [&](const V* block, V* out) {
          return TWIN(d_rsmp)(block, out, &taps, r.up, r.down, &state);
        };
        const auto all = in_blocks<V>(in, blocks, call, true);
        EXPECT_EQ(state.points, 0U);
        return all;
      };
      SCOPED_TRACE(testing::Message() << r.up << '/' << r.down);
      expect_splits_alike(n, {1, 7, 64, 1024, 4097}, run);
      signal<V> whole;
      ASSERT_EQ(TWIN(d_rsmp)(&in, &whole, &taps, r.up, r.down, nullptr), 0);
      ASSERT_TRUE(same_bits(run({n}), whole.values()));
    }
  }
}

TYPED_TEST(Resample, BlocksGiveWhatTheirSamplesSufficeFor) {
  using V = TypeParam;
  const signal<V> taps{0.5, 1, 0.5};
  signal<V> state;
  signal<V> out;
  signal<V> in;
  in.points = 1;
  ASSERT_EQ(TWIN(_alloc)(&in), 0);
  in.delta = 2;
  const samples<V> given[] = {{1}, {scalar<V>(1.5), 2}, {scalar<V>(2.5), 3}};
  for (int i = 0; i < 3; ++i) {
    in.data[0] = scalar<V>(i + 1);
    ASSERT_EQ(TWIN(d_rsmp)(&in, &out, i == 0 ? &taps : nullptr, 2, 1, &state), 0);
    EXPECT_EQ(out.values(), given[i]);
    if (i != 1) continue;
    signal<V> copied;  // a copy of the state is the stream at that place
    ASSERT_EQ(TWIN(_copy)(&copied, &state), 0);
    ASSERT_EQ(TWIN(d_rsmp)(nullptr, &out, nullptr, 2, 1, &copied), 0);
    EXPECT_EQ(out.values(), samples<V>{1});
  }
  ASSERT_EQ(TWIN(d_rsmp)(nullptr, &out, nullptr, 2, 1, &state), 0);
  EXPECT_EQ(out.values(), samples<V>{scalar<V>(1.5)});
  EXPECT_EQ(out.delta, 1);
}

// MATLAB's resample: the whole-number multiples of the taps that it designed, the start of a signal and of
// what came out.
TYPED_TEST(Resample, PublishedOutputs) {
  using V = TypeParam;
  samples<V> x;
  for (int n = 0; n <= 30; ++n) {
    const double angle = std::numbers::pi * n;
    x.push_back(static_cast<scalar<V>>((1 + std::sin(angle / 100)) * std::sin(angle / 10)));
  }
  const std::vector<double> halves = {
      0, -0.001050914955086904, 0, 0.002507669167089098, 0,  -0.004892302716484762, 0, 0.008552133524848713,
      0, -0.013982737582883577, 0, 0.022011730150953077, 0,  -0.03432241903910651,  0, 0.055259688647834294,
      0, -0.10087799600101383,  0, 0.3165365473244818,   0.5};
  const std::vector<double> thirds = {
      0, -0.0015218049527437325, -0.002150181141091541, 0, 0.0038251740642962374, 0.004906003371384393,
      0, -0.007650433134205231,  -0.009357825256981775, 0, 0.013571041697501418,  0.016138458533448603,
      0, -0.022388294588697476,  -0.02617147497626444,  0, 0.03540144996786277,   0.04104712924920604,
      0, -0.05516202748269346,   -0.06411862191599772,  0, 0.08796979026523563,   0.10446069508539771,
      0, -0.15539008220258557,   -0.19866928825688832,  0, 0.40940847283826587,   0.8249431093405478,
      1};
  const struct {
    int up;
    int down;
    std::vector<double> half;
    double gain;
    std::vector<double> out;
  } cases[] = {
      {1,
       2,
       halves,
       1,
       {0.05105157491176102, 0.6161538020088916, 1.0730451958899592, 1.127093881786546, 0.7348797530940103,
        -0.0006234818662005015}},
      {2,
       1,
       halves,
       2,
       {0, 0.13108541014192288, 0.3187234527363062, 0.48927777634896896, 0.6246925936555862,
        0.7551323858121255, 0.8851522191615877, 0.9945936779973633, 1.0702555047848274, 1.1243054106952182}},
      {3,
       2,
       thirds,
       1,
       {0, 0.19155067419717928, 0.4369787118288363, 0.6246925936555862, 0.799517177289079, 0.9617833083113022,
        1.0702555047848274, 1.1379699481068208, 1.162838747043965, 1.1292667365638591}},
      {2,
       3,
       thirds,
       2.0 / 3,
       {0.029682991408536377, 0.47065828932179654, 0.887369528508729, 1.1257444303045927, 1.129813305148497,
        0.8711556895643372}}};
  for (const auto& c : cases) {
    samples<V> h;
    for (const double tap : c.half) h.push_back(static_cast<scalar<V>>(tap * c.gain));
    for (index j = std::ssize(c.half) - 2; j >= 0; --j) h.push_back(h[static_cast<std::size_t>(j)]);
    const signal<V> taps(h);
    const signal<V> in(x);
    signal<V> out;
    ASSERT_EQ(TWIN(d_rsmp)(&in, &out, &taps, c.up, c.down, nullptr), 0);
    for (std::size_t k = 0; k < c.out.size(); ++k) {
      EXPECT_NEAR(static_cast<double>(out.data[k]), c.out[k], 20 * unit_roundoff<V>)
          << c.up << '/' << c.down << ' ' << k;
    }
  }
}

TYPED_TEST(Resample, RefusalsAndWantOfStorage) {
  using V = TypeParam;
  const signal<V> in(noise<V>(100));
  const signal<V> pairs(noise<V>(10), true);
  const signal<V> taps{0.5, 1, 0.5};
  const signal<V> none;
  signal<V> out{7};
  signal<V> state;
  for (const auto& [up, down] : {std::pair{0, 1}, {1, 0}, {-1, 1}, {(1 << 24) + 1, 1}, {1, (1 << 24) + 1}}) {
    EXPECT_EQ(TWIN(d_rsmp)(&in, &out, &taps, up, down, nullptr), -1);
  }
  for (const V* wrong : {static_cast<const V*>(&none), static_cast<const V*>(&pairs)}) {
    EXPECT_EQ(TWIN(d_rsmp)(&in, &out, wrong, 2, 1, nullptr), -1);
    EXPECT_EQ(TWIN(d_rsmp)(&in, &out, wrong, 2, 1, &state), -1);
  }
  EXPECT_EQ(TWIN(d_rsmp)(nullptr, &out, &taps, 2, 1, nullptr), -1);
  V many = in;  // 2^31 outputs
  many.points = 1U << 30;
  EXPECT_EQ(TWIN(d_rsmp)(&many, &out, &taps, 2, 1, nullptr), -1);
  EXPECT_EQ(out.values(), samples<V>{7});
  ASSERT_EQ(TWIN(d_rsmp)(&in, &out, &taps, 2, 1, &state), 0);
  const auto kept = state.values();
  EXPECT_EQ(TWIN(d_rsmp)(&in, &out, &taps, 1, 2, &state), -1);
  EXPECT_EQ(TWIN(d_rsmp)(&pairs, &out, &taps, 2, 1, &state), -1);
  EXPECT_TRUE(same_bits(state.values(), kept));
  signal<V> stranger(noise<V>(200));
  EXPECT_EQ(TWIN(d_rsmp)(&in, &out, &taps, 2, 1, &stranger), -1);
  {
    // An output that cannot be sized leaves the stream where it was.
    const failing_records no_more(0);
    signal<V> wanting;
    EXPECT_EQ(TWIN(d_rsmp)(&in, &wanting, &taps, 2, 1, &state), -1);
    EXPECT_TRUE(same_bits(state.values(), kept));
    wanting.points = 0;
  }
  for (int kind = 0; kind < 3; ++kind) {
    const auto design = [kind](V* v) {
      if (kind == 0) return TWIN(c_rsmp)(v, 3, 2, scalar<V>(0.8), 60);
      return kind == 1 ? TWIN(c_rsmp_cos)(v, 4, 8, scalar<V>(0.25))
                       : TWIN(c_rsmp_pcos)(v, 4, 8, scalar<V>(0.25));
    };
    signal<V> v{1, 2};
    {
      const failing_tables no_tables(0);
      EXPECT_EQ(design(&v), -1);
      EXPECT_EQ(v.values(), (samples<V>{1, 2}));
    }
    const failing_records no_records(0);
    EXPECT_EQ(design(&v), -1);
    v.points = 0;
  }
}

// How far the response strays from 1 in the pass band and from 0 in the stop band, in decibels, over a grid
// of 16 points per tap; of symmetric taps by Clenshaw's recurrence.
template <record V> double held_attenuation(const V& taps, index up, index down, double passband) {
  const index centre = (length(&taps) - 1) / 2;
  const double nyquist = 0.5 / static_cast<double>(std::max(up, down));
  const index grid = 16 * length(&taps);
  double worst = 0;
  for (index i = 0; i <= grid / 2; ++i) {
    const double f = static_cast<double>(i) / static_cast<double>(grid);
    const double c = std::cos(2 * std::numbers::pi * f);
    double next = 0;
    double after = 0;
    for (index k = centre; k > 0; --k) {
      const double term = 2 * static_cast<double>(taps.data[centre + k]) + 2 * c * next - after;
      after = next;
      next = term;
    }
    const double gain = (static_cast<double>(taps.data[centre]) + c * next - after) / static_cast<double>(up);
    if (f <= passband * nyquist) worst = std::fmax(worst, std::abs(gain - 1));
    if (f >= nyquist) worst = std::fmax(worst, std::abs(gain));
  }
  return -20 * std::log10(worst);
}

TYPED_TEST(Resample, LowPassesHoldTheirAttenuation) {
  using V = TypeParam;
  const struct {
    int up;
    int down;
    double passband;
    double attenuation;
  } designs[] = {{2, 1, 0.5, 40},  {2, 1, 0.8, 50},  {3, 2, 0.9, 60},  {1, 4, 0.7, 70},
                 {2, 3, 0.8, 80},  {1, 2, 0.9, 90},  {2, 1, 0.9, 100}, {3, 2, 0.8, 110},
                 {1, 2, 0.9, 120}, {4, 1, 0.6, 130}, {1, 2, 0.8, 140}, {2, 1, 0.8, 150}};
  for (const auto& d : designs) {
    signal<V> v({1, 2}, true);
    ASSERT_EQ(TWIN(c_rsmp)(&v, d.up, d.down, scalar<V>(d.passband), scalar<V>(d.attenuation)), 0);
    const double asked = d.attenuation + 3.5 + std::fmax(0, d.attenuation - 100) / 20;
    const double reach = std::ceil(std::max(d.up, d.down) * (asked - 7.95) /
                                   (14.36 * (1 - static_cast<double>(scalar<V>(d.passband)))));
    ASSERT_EQ(static_cast<double>(v.points), 2 * reach + 1);
    EXPECT_EQ(v.delta, scalar<V>(1.0 / d.up));
    EXPECT_EQ(v.complex, 0);
    const double held = held_attenuation<V>(v, d.up, d.down, d.passband);
    EXPECT_GT(held, is_double<V> ? d.attenuation : std::min(d.attenuation, 125.0)) << d.attenuation;
    for (index phase = 0; phase < d.up; ++phase) {
      real sum = 0;
      for (index j = phase; j < length<V>(&v); j += d.up) sum += static_cast<real>(v.data[j]);
      EXPECT_NEAR(static_cast<double>(sum), 1, (is_double<V> ? 16 : 4) * unit_roundoff<V>);
    }
    for (index j = 0; j < length<V>(&v); ++j) ASSERT_EQ(v.data[j], v.data[length<V>(&v) - 1 - j]);
  }
  signal<V> v{3};
  using T = scalar<V>;
  for (const auto& [passband, attenuation] : {std::pair<T, T>{0, 60},
                                              {1, 60},
                                              {T(0.5), 19},
                                              {T(0.5), 201},
                                              {std::numeric_limits<T>::quiet_NaN(), 60}}) {
    EXPECT_EQ(TWIN(c_rsmp)(&v, 1, 1, passband, attenuation), -1);
  }
  EXPECT_EQ(TWIN(c_rsmp)(&v, 0, 1, T(0.5), 60), -1);
  EXPECT_EQ(TWIN(c_rsmp)(&v, 1 << 24, 1, T(0.99), 200), -1);
  EXPECT_EQ(TWIN(c_rsmp_cos)(&v, 1 << 24, 1000, T(0.5)), -1);
  EXPECT_EQ(TWIN(c_rsmp_cos)(&v, 2, 0, T(0.5)), -1);
  EXPECT_EQ(TWIN(c_rsmp_pcos)(&v, 2, 1, T(1.5)), -1);
  EXPECT_EQ(v.values(), samples<V>{3});
}

TYPED_TEST(Resample, PulsesFollowTheirFormulas) {
  using V = TypeParam;
  constexpr real pi = std::numbers::pi_v<real>;
  const auto raised = [](real t, real r) {
    const real s = t == 0 ? 1 : std::sin(pi * t) / (pi * t);
    const real d = 1 - 4 * r * r * t * t;
    return std::abs(d) < 1e-9L ? pi / 4 * s : s * std::cos(pi * r * t) / d;
  };
  const auto root = [](real t, real r) {
    if (t == 0) return 1 - r + 4 * r / pi;
    const real d = 1 - 16 * r * r * t * t;
    if (std::abs(d) < 1e-9L) {
      const real a = pi / (4 * r);
      return r / std::sqrt(2.0L) * ((1 + 2 / pi) * std::sin(a) + (1 - 2 / pi) * std::cos(a));
    }
    return (std::sin(pi * t * (1 - r)) + 4 * r * t * std::cos(pi * t * (1 + r))) / (pi * t * d);
  };
  for (const auto& [up, span, rolloff] : {std::tuple{1, 3, 0.25},
                                          {2, 3, 0.25},
                                          {8, 8, 0.5},
                                          {6, 5, 0.3},
                                          {5, 4, 0.0},
                                          {4, 6, 1.0},
                                          {10, 2, 0.35}}) {
    SCOPED_TRACE(testing::Message() << up << ' ' << span << ' ' << rolloff);
    const auto r = static_cast<real>(scalar<V>(rolloff));
    signal<V> cos;
    signal<V> pcos;
    ASSERT_EQ(TWIN(c_rsmp_cos)(&cos, up, span, scalar<V>(rolloff)), 0);
    ASSERT_EQ(TWIN(c_rsmp_pcos)(&pcos, up, span, scalar<V>(rolloff)), 0);
    ASSERT_EQ(cos.points, static_cast<std::uint32_t>(2 * span * up + 1));
    real energy = 0;
    std::vector<real> sums(static_cast<std::size_t>(up));
    for (index j = 0; j <= 2 * span * up; ++j) {
      const real t = static_cast<real>(j - span * up) / static_cast<real>(up);
      sums[static_cast<std::size_t>(j % up)] += raised(t, r);
      energy += root(t, r) * root(t, r);
    }
    for (index j = 0; j <= 2 * span * up; ++j) {
      const real t = static_cast<real>(j - span * up) / static_cast<real>(up);
      const real wanted = raised(t, r) / sums[static_cast<std::size_t>(j % up)];
      const real wanted_root = root(t, r) * std::sqrt(static_cast<real>(up) / energy);
      ASSERT_NEAR(static_cast<double>(cos.data[j]), static_cast<double>(wanted), 8 * unit_roundoff<V>) << j;
      ASSERT_NEAR(static_cast<double>(pcos.data[j]), static_cast<double>(wanted_root), 8 * unit_roundoff<V>)
          << j;
      ASSERT_TRUE((j - span * up) % up != 0 || cos.data[j] == (j == span * up ? 1 : 0));
    }
    const auto in = noisy<V>(50, false, 13);
    signal<V> out;
    ASSERT_EQ(TWIN(d_rsmp)(&in, &out, &cos, up, 1, nullptr), 0);
    for (index i = 0; i < 50; ++i) ASSERT_EQ(out.data[i * up], in.data[i]);
  }
  // MATLAB's rcosdesign(0.25, 6, 2), whose energy is 1.
  const double published[] = {-0.0265, 0.0462, 0.0375, -0.1205, -0.0454, 0.4399, 0.7558};
  signal<V> v;
  ASSERT_EQ(TWIN(c_rsmp_pcos)(&v, 2, 3, scalar<V>(0.25)), 0);
  for (int j = 0; j < 7; ++j) {
    EXPECT_NEAR(static_cast<double>(v.data[j]) / std::numbers::sqrt2, published[j], 5.1e-5);
    EXPECT_EQ(v.data[j], v.data[12 - j]);
  }
  // Two roots in a row give the samples back, as far as their ends allow.
  ASSERT_EQ(TWIN(c_rsmp_pcos)(&v, 8, 16, scalar<V>(0.25)), 0);
  signal<V> second;
  ASSERT_EQ(TWIN(_copy)(&second, &v), 0);
  ASSERT_EQ(TWIN(i_scale)(&second, scalar<V>(1.0 / 8)), 0);
  const auto in = noisy<V>(80, false, 17);
  signal<V> out;
  ASSERT_EQ(TWIN(d_rsmp)(&in, &out, &v, 8, 1, nullptr), 0);
  ASSERT_EQ(TWIN(d_rsmp)(&out, &out, &second, 1, 8, nullptr), 0);
  for (index i = 20; i < 60; ++i) EXPECT_NEAR(out.data[i], in.data[i], 1e-3);
}

// A tone through 160/147 and back to a fit of the tone: what is left lies below the attenuation, and a tone
// above the new Nyquist frequency below it too.
TYPED_TEST(Resample, TonesKeepTheirLevel) {
  using V = TypeParam;
  for (const double level : {80.0, 120.0}) {
    for (const auto& [up, down] : {std::pair{160, 147}, {147, 160}, {2, 1}, {1, 4}}) {
      signal<V> taps;
      ASSERT_EQ(TWIN(c_rsmp)(&taps, up, down, scalar<V>(0.9), scalar<V>(level)), 0);
      const double lower = std::min(1.0, static_cast<double>(up) / down);
      for (const double f : {0.05, 0.5, 0.9, 1.02}) {
        if (f > 1 && down < up) continue;  // not in the input
        const double in_frequency = f * lower;
        const auto in = tone<V>(4000, in_frequency);
        signal<V> out;
        ASSERT_EQ(TWIN(d_rsmp)(&in, &out, &taps, up, down, nullptr), 0);
        double worst = 0;
        const index edge = length<V>(&out) / 4;
        for (index k = edge; k < length<V>(&out) - edge; ++k) {
          const real t = static_cast<real>(k) * static_cast<real>(down) / static_cast<real>(up);
          const double wanted = f > 1 ? 0
                                      : static_cast<double>(std::sin(std::numbers::pi_v<real> *
                                                                     static_cast<real>(in_frequency) * t));
          worst = std::fmax(worst, std::abs(static_cast<double>(out.data[k]) - wanted));
        }
        const double floor = is_double<V> ? 300 : 115;
        EXPECT_LT(20 * std::log10(worst), -std::min(level, floor)) << up << '/' << down << " at " << f;
      }
    }
  }
}

}  // namespace
}  // namespace sigpak::test
