// SPDX-License-Identifier: MIT
// Running spectra against their definition in long double, and streams cut anywhere.
#include "spectral/reference.h"
#include "support/failing.h"
#include "support/forms.h"
#include "support/split.h"

namespace sigpak::test {
namespace {

template <class V> class Welch : public testing::Test {};
TYPED_TEST_SUITE(Welch, records, record_names);

constexpr int mean = 1;
constexpr int square = DSP_SPECTRUM_SQUARE;
constexpr int centre = DSP_SPECTRUM_CENTRE;
constexpr int density = DSP_SPECTRUM_DENSITY;

using wide = std::vector<long double>;

// One segment, from its definition: complex bins.
exact_signal exact_spectrum(const exact_signal& x, const wide& w, int flags, long double delta) {
  const std::size_t n = w.size();
  long double sum = 0;
  long double squares = 0;
  exact level = 0;
  for (std::size_t i = 0; i < n; ++i) {
    sum += w[i];
    squares += w[i] * w[i];
    level += w[i] * x[i];
  }
  level = (flags & centre) != 0 ? level / sum : 0;
  const long double gain = (flags & density) != 0 ? std::sqrt(delta / squares) : 1 / sum;
  const std::size_t padded = n << ((flags / 256) & 3);
  exact_signal roots(padded);
  for (std::size_t k = 0; k < padded; ++k) roots[k] = exact_root(k, padded, -1);
  exact_signal out(padded);
  for (std::size_t k = 0; k < padded; ++k) {
    for (std::size_t i = 0; i < n; ++i) out[k] += times(w[i] * (x[i] - level), roots[i * k % padded]);
    out[k] *= gain;
  }
  return out;
}

long double sides(std::size_t k, std::size_t padded, bool real) {
  return real && k >= 1 && k <= (padded - 1) / 2 ? 2 : 1;
}

template <record V>
status spectra(const V* a, const V* b, V* avg, V* history, const V* window, int flags, int hop, int* count,
               double most = 0) {
  return TWIN(h_dft)(a, b, avg, history, window, flags, hop, count, static_cast<scalar<V>>(most));
}

template <record V> wide window_of(const V* w, index n) {
  return w != nullptr ? wide(w->data, w->data + n) : wide(static_cast<std::size_t>(n), 1);
}

// The mean of the spectra of a, or of the powers and products with b.
template <record V>
exact_signal exact_mean(const V& a, const V* b, const V& window, int flags, index hop, int* segments) {
  const index n = length<V>(&window);
  const bool real = !is_complex(&a);
  const wide w = window_of<V>(&window, n);
  exact_signal sums;
  *segments = 0;
  for (index begin = 0; begin + n <= length(&a); begin += hop, ++*segments) {
    const auto x = exact_spectrum(exact_points<V>(part_of(a, begin, n)), w, flags, a.delta);
    const auto y =
        b != nullptr ? exact_spectrum(exact_points<V>(part_of(*b, begin, n)), w, flags, a.delta) : x;
    const std::size_t bins = real ? x.size() / 2 + 1 : x.size();
    sums.resize(b != nullptr ? 3 * bins : bins);
    for (std::size_t k = 0; k < bins; ++k) {
      const long double f = sides(k, x.size(), real);
      if (b == nullptr) {
        sums[k] += (flags & square) != 0 ? f * std::norm(x[k]) : x[k];
      } else {
        sums[k] += f * std::norm(x[k]);
        sums[bins + k] += f * std::norm(y[k]);
        sums[2 * bins + k] += f * times(std::conj(x[k]), y[k]);
      }
    }
  }
  for (auto& z : sums) z /= static_cast<long double>(std::max(*segments, 1));
  return sums;
}

TYPED_TEST(Welch, FollowsItsDefinition) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : {1, 2, 3, 5, 8, 16, 40}) {
    for (const bool complex : {false, true}) {
      for (const bool both : {false, true}) {
        if (complex && both) continue;
        signal<V> a(noise<V>((complex ? 2 : 1) * (3 * n + 1), 3), complex);
        const signal<V> b(noise<V>(3 * n + 1, 4));
        a.delta = T(0.25);
        signal<V> window(noise<V>(n, 5));
        for (index i = 0; i < n; ++i) window.data[i] += T(1.5);
        for (int flags = 0; flags < 1024; flags += 32) {
          const index hop = flags % 64 == 0 ? (n + 1) / 2 : std::max<index>(n - 1, 1);
          int wanted_count = 0;
          const auto wanted = exact_mean<V>(a, both ? &b : nullptr, window, flags, hop, &wanted_count);
          signal<V> avg{9};
          int count = 0;
          ASSERT_EQ(spectra<V>(&a, both ? &b : nullptr, &avg, nullptr, &window, mean | flags,
                               flags % 64 == 0 ? 0 : static_cast<int>(hop), &count),
                    0);
          ASSERT_EQ(count, wanted_count);
          ASSERT_EQ(avg.points, wanted.size());
          ASSERT_EQ(is_complex<V>(&avg), both || (flags & square) == 0);
          const index padded = n << (flags / 256);
          ASSERT_EQ(avg.delta, 1 / (static_cast<T>(padded) * T(0.25)));
          const auto got = exact_points<V>(avg);
          long double largest = 0;
          for (const auto& z : wanted) largest = std::max(largest, std::abs(z));
          if ((flags & centre) != 0 && n == 1) largest = 1;  // nothing but rounding is left
          const auto limit = 8 * unit_roundoff<V> * std::sqrt(std::log2(static_cast<double>(padded)) + 1) *
                             static_cast<double>(largest);
          for (std::size_t k = 0; k < wanted.size(); ++k) {
            ASSERT_LE(static_cast<double>(std::abs(got[k] - wanted[k])), limit)
                << n << " points, flags " << flags << (complex ? " complex" : "") << (both ? " both" : "")
                << ", bin " << k;
          }
        }
      }
    }
  }
}

TYPED_TEST(Welch, WithoutSpacingThereIsNoDensity) {
  using V = TypeParam;
  signal<V> a{2, 0, -2, 0};
  signal<V> avg;
  ASSERT_EQ(TWIN(h_fft)(&a, nullptr, &avg, nullptr, nullptr, mean | square, 77, nullptr, 0), 0);
  EXPECT_EQ(avg.values(), (samples<V>{0, 2, 0})) << "all points at once, whatever the hop";
  a.delta = 0;
  ASSERT_EQ(TWIN(h_fft)(&a, nullptr, &avg, nullptr, nullptr, mean | square | density, 0, nullptr, 0), 0);
  EXPECT_EQ(avg.values(), (samples<V>{0, 0, 0}));
  EXPECT_EQ(avg.delta, huge<V>);
}

// Lengths of every kind of transform, beyond those that the definition is summed for.
TYPED_TEST(Welch, OneLongSegmentIsTheTransformOfAllPoints) {
  using V = TypeParam;
  for (const index n : {1000, 4096, 10007}) {
    const signal<V> a(noise<V>(n, 12));
    signal<V> wanted(a.values());
    ASSERT_EQ(TWIN(i_rdft)(&wanted), 0);
    signal<V> got;
    ASSERT_EQ(spectra<V>(&a, nullptr, &got, nullptr, nullptr, 0, 0, nullptr), 0);
    EXPECT_LT(relative_l2(got.values(), wanted.values()), 16 * unit_roundoff<V>) << n;
  }
}

// The modes fold segment after segment as dsph_avg folds records.
TYPED_TEST(Welch, ModesAreThoseOfTheRunningAverage) {
  using V = TypeParam;
  using T = scalar<V>;
  const signal<V> x(noise<V>(64, 6));
  const signal<V> window{0.5, 1, 1.5, 2, 2, 1.5, 1, 0.5};
  for (const int form : {0, static_cast<int>(square)}) {
    for (int mode = 0; mode < 6; ++mode) {
      for (const int exponential : {0, static_cast<int>(DSP_SPECTRUM_EXPONENTIAL)}) {
        signal<V> wanted;
        int count = 0;
        for (index begin = 0; begin + 8 <= 64; begin += 4) {
          signal<V> one;
          const V block = part_of<V>(x, begin, 8);
          ASSERT_EQ(spectra<V>(&block, nullptr, &one, nullptr, &window, form, 0, nullptr), 0);
          ASSERT_EQ(TWIN(h_avg)(&one, &wanted, nullptr, mode | exponential, ++count, 0, T(-1), T(3)), 0);
        }
        signal<V> got;
        int segments = 0;
        ASSERT_EQ(spectra<V>(&x, nullptr, &got, nullptr, &window, mode | form | exponential, 4, &segments, 3),
                  0);
        EXPECT_EQ(segments, 15);
        EXPECT_TRUE(same_bits(got.values(), wanted.values())) << "mode " << mode << ' ' << form;
      }
    }
  }
}

TYPED_TEST(Welch, AnySplitOfAStreamGivesTheSameBits) {
  using V = TypeParam;
  using T = scalar<V>;
  const struct {
    index n, hop;
    int flags;
    bool complex, both;
  } cases[] = {{16, 5, mean | square, false, false},
               {16, 16, mean | square | centre, false, false},
               {64, 0, mean | square | 64 | 512, false, false},
               {24, 7, mean | centre, true, false},
               {32, 1, mean | density, false, true},
               {15, 15, mean | centre | 256, false, true},
               {16, 3, 4 | square, false, false},
               {8, 4, 0, true, false},
               {1, 1, mean | square, false, false}};
  for (const auto& c : cases) {
    const index samples_in_all = 7 * c.n + 3;
    const signal<V> a(noise<V>((c.complex ? 2 : 1) * samples_in_all, 7), c.complex);
    const signal<V> b(noise<V>(samples_in_all, 8));
    signal<V> window(noise<V>(c.n, 9));
    for (index i = 0; i < c.n; ++i) window.data[i] += T(1.5);
    const index hop = c.hop == 0 ? (c.n + 1) / 2 : c.hop;
    expect_splits_alike(samples_in_all, {1, 7, std::max<index>(hop - 1, 1), hop, hop + 1, c.n},
                        [&](const auto& blocks) {
                          signal<V> avg;
                          signal<V> history;
                          int count = 0;
                          index begin = 0;
                          for (const index points : blocks) {
                            const V block = part_of<V>(a, begin, points);
                            const V other = part_of<V>(b, begin, points);
                            EXPECT_EQ(spectra<V>(&block, c.both ? &other : nullptr, &avg, &history, &window,
                                                 c.flags, static_cast<int>(c.hop), &count),
                                      0);
                            EXPECT_LT(length<V>(&history), c.n);
                            begin += points;
                          }
                          auto all = avg.values();
                          all.push_back(static_cast<T>(count));
                          all.push_back(avg.delta);
                          return all;
                        });
  }
}

TYPED_TEST(Welch, DataMayLieAnywhereAndPowersOfTwoAreLengthsLikeAny) {
  using V = TypeParam;
  for (const index n : {64, 4096}) {
    const auto x = noise<V>(2 * n, 10);
    samples<V> wanted;
    for (index offset = 0; offset < 9; ++offset) {
      samples<V> shifted(x.size() + 9);
      std::copy(x.begin(), x.end(), shifted.begin() + offset);
      V a = {};
      a.delta = 1;
      a.data = shifted.data() + offset;
      a.points = static_cast<std::uint32_t>(2 * n);
      V window = a;
      window.points = static_cast<std::uint32_t>(n);
      signal<V> avg;
      const auto run = offset % 2 == 0 ? TWIN(h_fft) : TWIN(h_dft);
      ASSERT_EQ(run(&a, nullptr, &avg, nullptr, &window, mean | square | centre, 0, nullptr, 0), 0);
      if (offset == 0) wanted = avg.values();
      EXPECT_TRUE(same_bits(avg.values(), wanted)) << n << " points, " << offset;
    }
  }
}

// What is longer asks for no memory. No sample is read before there is some.
TYPED_TEST(Welch, TransformsToBelowTwoToTheThirtieth) {
  using V = TypeParam;
  signal<V> a{1};
  const struct {
    std::uint32_t points;
    int padding;
    bool too_long;
  } cases[] = {{(1U << 30) - 1, 0, false}, {1U << 27, DSP_SPECTRUM_PAD8, true}};
  for (const auto& [points, padding, too_long] : cases) {
    V many = a;
    many.points = points;
    signal<V> avg;
    int count = 0;
    const failing_memory none({.first = 0});
    EXPECT_EQ(spectra<V>(&many, nullptr, &avg, nullptr, nullptr, mean | padding, 0, &count), -1);
    EXPECT_EQ(failing_memory::calls() == 0, too_long);
  }
}

TYPED_TEST(Welch, RefusesAndSurvives) {
  using V = TypeParam;
  using T = scalar<V>;
  signal<V> a(noise<V>(32));
  const signal<V> z(noise<V>(64), true);
  const signal<V> shorter(noise<V>(31));
  signal<V> window{1, 2, 1};
  const signal<V> balanced{1, -1};
  const signal<V> dark{0, 0};
  const signal<V> none;
  const signal<V> nan(samples<V>{1, std::numeric_limits<T>::quiet_NaN()});
  signal<V> avg{5};
  int count = 0;
  const auto refused = [&](const V& x, const V* y, const V* w, int flags, int hop) {
    EXPECT_EQ(spectra<V>(&x, y, &avg, nullptr, w, flags, hop, &count), -1) << flags << ' ' << hop;
    EXPECT_EQ(avg.values(), (samples<V>{5}));
    EXPECT_EQ(count, 0);
  };
  for (const int flags : {6, 7, 15, -1, 1024}) refused(a, nullptr, &window, flags, 0);
  for (const int mode : {2, 3, 4, 5}) refused(a, &a, &window, mode, 0);
  for (const int hop : {-1, 4}) refused(a, nullptr, &window, mean, hop);
  for (const signal<V>* w : {&none, &dark, &balanced, &nan, &z}) refused(a, nullptr, w, mean, 0);
  for (const signal<V>* w : {&none, &dark, &nan, &z}) refused(a, nullptr, w, mean | square | density, 0);
  refused(a, &shorter, &window, mean, 0);
  refused(z, &a, &window, mean, 0);
  refused(a, &z, &window, mean, 0);
  a.delta = -1;
  refused(a, nullptr, &window, mean | density, 0);
  a.delta = 1;
  EXPECT_EQ(TWIN(h_fft)(&a, nullptr, &avg, nullptr, &window, mean, 0, &count, 0), -1) << "three points";
  count = 1;
  EXPECT_EQ(spectra<V>(&a, nullptr, &avg, nullptr, &window, mean | square, 0, &count), -1)
      << "another length";
  count = 0;
  EXPECT_EQ(spectra<V>(&none, nullptr, &avg, nullptr, &window, mean, 0, &count), 0);
  EXPECT_EQ(spectra<V>(&balanced, nullptr, &avg, nullptr, &window, mean, 0, &count), 0) << "shorter than N";
  EXPECT_EQ(avg.values(), (samples<V>{5}));
  EXPECT_EQ(count, 0);
  signal<V> history;
  const V some = part_of<V>(a, 0, 2);
  const V pairs = part_of<V>(z, 0, 2);
  ASSERT_EQ(spectra<V>(&some, nullptr, &avg, &history, &window, mean, 0, &count), 0);
  EXPECT_EQ(spectra<V>(&pairs, nullptr, &avg, &history, &window, mean, 0, &count), -1) << "real ones wait";
  EXPECT_EQ(history.points, 2U);
  signal<V> other(noise<V>(32));
  for (V* const own :
       {static_cast<V*>(&a), static_cast<V*>(&other), static_cast<V*>(&avg), static_cast<V*>(&window)})
    EXPECT_EQ(spectra<V>(&a, &other, &avg, own, &window, mean, 0, nullptr), -1) << "a state of its own";
  signal<V> in_place(a.values());
  signal<V> apart;
  ASSERT_EQ(spectra<V>(&a, nullptr, &apart, nullptr, nullptr, square, 0, nullptr), 0);
  ASSERT_EQ(spectra<V>(&in_place, nullptr, &in_place, nullptr, nullptr, square, 0, nullptr), 0);
  EXPECT_EQ(in_place.values(), apart.values());
}

}  // namespace
}  // namespace sigpak::test
