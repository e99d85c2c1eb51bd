// SPDX-License-Identifier: MIT
// Correlations against direct sums in long double, whole and in streams cut anywhere.
#include <complex>

#include "references/exact_transform.h"
#include "support/forms.h"
#include "support/split.h"

namespace sigpak::test {
namespace {

template <class V> class Correlation : public testing::Test {};
TYPED_TEST_SUITE(Correlation, records, record_names);

template <record V> double norm_of(const V& v) {
  long double sum = 0;
  for (index i = 0; i < scalars<V>(&v); ++i) sum += static_cast<long double>(v.data[i]) * v.data[i];
  return static_cast<double>(std::sqrt(sum));
}

template <record V> std::vector<exact> exact_correlation(const V& a, const V& b, index lags, int flags) {
  const auto x = wide_points(a);
  const auto y = wide_points(b);
  const auto na = static_cast<index>(x.size());
  const auto nb = static_cast<index>(y.size());
  const index n = std::max(na, nb);
  const bool circular = (flags & DSP_CORR_CIRCULAR) != 0;
  const auto energies = static_cast<long double>(norm_of(a)) * static_cast<long double>(norm_of(b));
  std::vector<exact> out;
  for (index l = -lags; l <= lags; ++l) {
    exact sum = 0;
    for (index i = 0; i < nb; ++i) {
      const index j = circular ? ((i + l) % n + n) % n : i + l;
      if (j >= 0 && j < na) {
        sum += times(x[static_cast<std::size_t>(j)], std::conj(y[static_cast<std::size_t>(i)]));
      }
    }
    const auto whole = static_cast<long double>(n);
    const auto left = static_cast<long double>(n - std::abs(l));
    switch (flags & 3) {
      case DSP_CORR_BIASED:
        sum /= whole;
        break;
      case DSP_CORR_UNBIASED:
        sum = left > 0 ? sum / left : 0;
        break;
      case DSP_CORR_COEFFICIENT:
        sum = energies > 0 ? sum / energies : 0;
        break;
      default:
        break;
    }
    out.push_back(sum);
  }
  return out;
}

// The largest error of any lag in units of u times the norms, under the scale of that lag.
template <record V> double worst_error(const V& got, const V& a, const V& b, index lags, int flags) {
  const auto wanted = exact_correlation(a, b, lags, flags);
  const auto points = wide_points(got);
  if (points.size() != wanted.size()) return 1e9;
  const double n = static_cast<double>(std::max(length<V>(&a), length<V>(&b)));
  const double norms = norm_of(a) * norm_of(b);
  double worst = 0;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    const double left = n - std::abs(static_cast<double>(i) - static_cast<double>(lags));
    const double scale = (flags & 3) == 0   ? 1
                         : (flags & 3) == 1 ? 1 / n
                         : (flags & 3) == 2 ? 1 / std::max(left, 1.0)
                                            : 1 / norms;
    worst = std::max(
        worst, static_cast<double>(std::abs(points[i] - wanted[i])) / (unit_roundoff<V> * norms * scale));
  }
  return worst;
}

// Every pairing of forms, and a signal with itself.
TYPED_TEST(Correlation, FollowsItsDefinition) {
  using V = TypeParam;
  const struct {
    index na, nb, lags;
  } cases[] = {{1, 1, 0},        {5, 3, 4},        {3, 5, 9},       {64, 64, 63},
               {100, 100, 7},    {100, 70, 99},    {300, 300, 299}, {1000, 900, 130},
               {5000, 5000, 64}, {5000, 5000, 65}, {4200, 4200, 0}, {4000, 4000, 200}};
  for (const auto& c : cases) {
    for (int forms = 0; forms < 6; ++forms) {
      const bool complex_a = (forms & 1) != 0;
      const bool complex_b = (forms & 2) != 0;
      const signal<V> a(noise<V>(c.na * (complex_a ? 2 : 1), 1), complex_a);
      const signal<V> other(noise<V>(c.nb * (complex_b ? 2 : 1), 2), complex_b);
      const signal<V>& b = forms < 4 ? other : a;
      for (int flags = 0; flags < 8; ++flags) {
        const bool by_norms = (flags & 3) == DSP_CORR_COEFFICIENT;
        if (c.na * c.lags > 100'000 ? flags != 2 : forms > 3 && !by_norms) continue;
        signal<V> out;
        const int done = TWIN(b_corr)(&a, &b, &out, static_cast<std::int32_t>(c.lags), flags);
        if (flags >= 4 && a.points != b.points) {
          ASSERT_EQ(done, -1);
          continue;
        }
        ASSERT_EQ(done, 0);
        ASSERT_EQ(is_complex<V>(&out), is_complex<V>(&a) || is_complex<V>(&b));
        const double limit = 4 * std::log2(4.0 * static_cast<double>(c.na + c.lags));
        EXPECT_LT((worst_error<V>(out, a, b, c.lags, flags)),
                  c.lags <= 64 && flags < 4 && forms < 4 ? 3 : limit)
            << c.na << " and " << c.nb << " points, " << c.lags << " lags, forms " << forms << ", flags "
            << flags;
      }
    }
  }
}

TYPED_TEST(Correlation, KnownNumbers) {
  using V = TypeParam;
  signal<V> a{1, 2, 3};
  signal<V> b{0, 1, 0.5};
  signal<V> out;
  a.delta = 1;
  b.delta = 3;
  ASSERT_EQ(TWIN(b_corr)(&a, &b, &out, -1, DSP_CORR_RAW), 0);
  EXPECT_EQ(out.values(), (samples<V>{0.5, 2, 3.5, 3, 0}));
  EXPECT_EQ(out.delta, 2);
  const signal<V> zeros{0, 0, 0};
  ASSERT_EQ(TWIN(b_corr)(&a, &zeros, &a, 1, DSP_CORR_COEFFICIENT), 0);
  EXPECT_EQ(a.values(), (samples<V>{0, 0, 0})) << "in place, and nothing over nothing";
  const signal<V> none;
  for (const int flags : {0, 4}) {
    ASSERT_EQ(TWIN(b_corr)(&none, &none, &out, -1, flags), 0);
    EXPECT_EQ(out.points, flags == 0 ? 0U : 1U);
    ASSERT_EQ(TWIN(b_corr)(&none, &none, &out, 2, flags), 0);
    EXPECT_EQ(out.values(), (samples<V>(5)));
  }
}

TYPED_TEST(Correlation, AnySplitOfAStreamGivesTheSameBits) {
  using V = TypeParam;
  const index n = 11000;
  for (const int lags : {0, 1, 33, 64, 65, 300, 700}) {
    for (int forms = 0; forms < 4; ++forms) {
      const bool complex_a = (forms & 1) != 0;
      const bool complex_b = (forms & 2) != 0;
      const signal<V> a(noise<V>(n * (complex_a ? 2 : 1), 1), complex_a);
      const signal<V> b(noise<V>(n * (complex_b ? 2 : 1), 2), complex_b);
      signal<V> whole;
      ASSERT_EQ(TWIN(b_corr)(&a, &b, &whole, lags, DSP_CORR_COEFFICIENT), 0);
      expect_splits_alike(n, {7, 4096}, [&](const auto& blocks) {
        signal<V> history;
        signal<V> out;
        index begin = 0;
        for (const index points : blocks) {
          const V x = part_of<V>(a, begin, points);
          const V y = part_of<V>(b, begin, points);
          signal<V> now;  // reading in between changes nothing
          EXPECT_EQ(TWIN(h_corr)(&x, &y, begin % 64 == 1 ? &now : nullptr, &history, lags, 0), 0);
          begin += points;
        }
        const V x = part_of<V>(a, 0, 0);
        const V y = part_of<V>(b, 0, 0);
        EXPECT_EQ(TWIN(h_corr)(&x, &y, &out, &history, lags, DSP_CORR_COEFFICIENT), 0);
        for (index i = 0; i < scalars<V>(&whole); ++i) {
          EXPECT_NEAR(out.data[i], whole.data[i], 200 * unit_roundoff<V>) << lags;
        }
        return out.values();
      });
      if (testing::Test::HasFailure()) return;
    }
  }
}

TYPED_TEST(Correlation, RefusesAndSurvives) {
  using V = TypeParam;
  const signal<V> a(noise<V>(500, 1));
  const signal<V> z(noise<V>(1000, 1), true);
  const signal<V> shorter(noise<V>(400, 1));
  signal<V> out{7};
  signal<V> history;
  for (const int flags : {-1, 8, 16}) EXPECT_EQ(TWIN(b_corr)(&a, &a, &out, 3, flags), -1);
  EXPECT_EQ(TWIN(b_corr)(&a, &shorter, &out, 3, DSP_CORR_CIRCULAR), -1);
  EXPECT_EQ(TWIN(h_corr)(&a, &a, &out, &history, 3, DSP_CORR_CIRCULAR), -1);
  EXPECT_EQ(TWIN(h_corr)(&a, &a, &out, &history, -1, 0), -1);
  EXPECT_EQ(TWIN(h_corr)(&a, &a, nullptr, nullptr, 3, 0), -1) << "neither a result nor a stream";
  EXPECT_EQ(TWIN(h_corr)(&a, &shorter, &out, &history, 3, 0), -1);
  ASSERT_EQ(TWIN(h_corr)(&a, &a, nullptr, &history, 100, 0), 0);
  EXPECT_EQ(TWIN(h_corr)(&a, &a, &out, &history, 99, 0), -1) << "other lags";
  EXPECT_EQ(TWIN(h_corr)(&a, &z, &out, &history, 100, 0), -1) << "another form";
  EXPECT_EQ(out.values(), (samples<V>{7}));
  EXPECT_EQ(TWIN(h_corr)(&a, &a, nullptr, &history, 100, 0), 0);
  EXPECT_EQ(TWIN(h_corr)(&history, &history, nullptr, &history, 100, 0), -1) << "a state of its own";
  signal<V> fresh;
  EXPECT_EQ(TWIN(h_corr)(&a, &a, &fresh, &fresh, 3, 0), -1) << "a state of its own";
}

}  // namespace
}  // namespace sigpak::test
