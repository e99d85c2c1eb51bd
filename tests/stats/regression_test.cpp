// Regression: a certified set, exact lines, and the fixed values of degenerate records.
#include "stats/certified.h"
#include "stats/statistic.h"

namespace sigpak::test {
namespace {

template <class V> class Regression : public testing::Test {};
TYPED_TEST_SUITE(Regression, records, record_names);

TYPED_TEST(Regression, CertifiedSet) {
  using V = TypeParam;
  samples<V> pairs;
  for (const int tenths : certified::norris) pairs.push_back(static_cast<scalar<V>>(tenths / 10.0));
  const signal<V> v(pairs, true);
  signal<V> out;
  ASSERT_EQ(TWIN(s_lin_regres2)(&v, &out), 0);
  ASSERT_EQ(out.points, 20U);
  EXPECT_EQ(out.complex, 0);
  const auto& wanted = is_double<V> ? certified::norris_double : certified::norris_float;
  for (std::size_t i = 0; i < 20; ++i) {
    EXPECT_NEAR(wide(out.data[i]), wanted[i], std::abs(wanted[i]) * (1e-9 + unit_roundoff<V>)) << i;
  }
  signal<V> line;
  ASSERT_EQ(TWIN(s_lin_regres)(&v, &line), 0);
  EXPECT_EQ(line.values(), (samples<V>{out.data[0], out.data[1]}));
}

TYPED_TEST(Regression, SamplesOverTime) {
  using V = TypeParam;
  signal<V> v{1, 3, 5};
  for (const double delta : {1.0, 0.0, 0.25, -2.0}) {
    const double step = delta == 0 ? 1 : delta;
    v.delta = static_cast<scalar<V>>(delta);
    signal<V> out;
    out.delta = 9;
    ASSERT_EQ(TWIN(s_lin_regres2)(&v, &out), 0);
    EXPECT_EQ(out.delta, 9);
    const double slope = 2 / step;
    const double spread = -(step / std::sqrt(step * step * (1 + 2.0 / 3)));
    const double wanted[] = {slope,       1,
                             0,           0,
                             0,           0,
                             spread,      1 / slope,
                             -1 / slope,  0,
                             0,           0,
                             0,           -3 / std::sqrt(9 + 8.0 / 3),
                             step,        3,
                             step * step, 4,
                             2 * step,    step > 0 ? 1.0 : -1.0};
    for (int i = 0; i < 20; ++i) {
      EXPECT_NEAR(wide(out.data[i]), wanted[i], 8 * unit_roundoff<V> * (1 + std::abs(wanted[i]))) << i;
    }
  }
}

TYPED_TEST(Regression, LongRecordsAgreeWithLongDouble) {
  using V = TypeParam;
  for (const index n : {2, 3, 100, 2049, 20000}) {
    const signal<V> v(noise<V>(2 * n, 9), true);
    long double mx = 0, my = 0, xx = 0, yy = 0, xy = 0;
    const auto x = [&](index i) { return static_cast<long double>(v.data[2 * i]); };
    const auto y = [&](index i) { return static_cast<long double>(v.data[2 * i + 1]); };
    for (index i = 0; i < n; ++i) mx += x(i) / n, my += y(i) / n;
    for (index i = 0; i < n; ++i) {
      xx += (x(i) - mx) * (x(i) - mx) / n;
      yy += (y(i) - my) * (y(i) - my) / n;
      xy += (x(i) - mx) * (y(i) - my) / n;
    }
    signal<V> out;
    ASSERT_EQ(TWIN(s_lin_regres2)(&v, &out), 0);
    const long double residual = n < 3 ? 0 : (yy - xy * xy / xx) * n / (n - 2.0L);
    const struct {
      int entry;
      long double wanted;
    } checks[] = {
        {0, xy / xx}, {1, my - xy / xx * mx}, {2, residual},          {3, residual / n / xx},
        {7, xy / yy}, {8, mx - xy / yy * my}, {16, xx * n / (n - 1)}, {19, xy / std::sqrt(xx * yy)}};
    for (const auto& c : checks) {
      const auto wanted = static_cast<double>(c.wanted);
      EXPECT_NEAR(wide(out.data[c.entry]), wanted, 1e-12 + std::abs(wanted) * unit_roundoff<V>)
          << n << " " << c.entry;
    }
  }
}

// Equal abscissae leave no slope, whatever the rounding of their centre makes of them.
TYPED_TEST(Regression, VerticalAndHorizontalLines) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const double level : {0.0, 0.1, 0.7, 3.3, -1e6 / 7, 1e-9 / 3}) {
    for (const int n : {2, 3, 10, 5000}) {
      samples<V> pairs;
      for (int i = 0; i < n; ++i) {
        pairs.push_back(static_cast<T>(level));
        pairs.push_back(static_cast<T>(i));
      }
      const signal<V> v(pairs, true);
      signal<V> out;
      ASSERT_EQ(TWIN(s_lin_regres2)(&v, &out), 0);
      const T freedom = n < 3 ? T(0) : static_cast<T>(n / (n - 2.0));
      EXPECT_EQ(out.data[0], huge<V>) << level << " " << n;
      EXPECT_EQ(out.data[1], huge<V>);
      EXPECT_NEAR(wide(out.data[3]), wide(freedom) * wide(huge<V>), 1e-6 * wide(huge<V>));
      EXPECT_EQ(out.data[16], 0);
      EXPECT_EQ(out.data[19], 0);
      EXPECT_NEAR(wide(out.data[7]), 0, 1e-9) << "of x on y the line is level";
      EXPECT_NEAR(wide(out.data[8]), level, 1e-6 * std::abs(level));
    }
  }
}

TYPED_TEST(Regression, FewerThanTwoPoints) {
  using V = TypeParam;
  const struct {
    std::initializer_list<double> data;
    bool complex;
    double x, y;
  } cases[] = {{{}, false, 0, 0}, {{}, true, 0, 0}, {{7}, false, 0, 7}, {{0.1, -3}, true, 0.1, -3}};
  for (const auto& c : cases) {
    signal<V> v(c.data, c.complex);
    v.delta = 2;
    ASSERT_EQ(TWIN(s_lin_regres2)(&v, &v), 0) << "the result may be the input";
    samples<V> wanted(20, 0);
    wanted[1] = wanted[15] = static_cast<scalar<V>>(c.y);
    wanted[8] = wanted[14] = static_cast<scalar<V>>(c.x);
    EXPECT_EQ(v.values(), wanted);
    EXPECT_EQ(v.complex, 0);
  }
}

TYPED_TEST(Regression, TinySpreadsStillCorrelate) {
  using V = TypeParam;
  const signal<V> v({0, 0, 1e-17, 1e-17, 2e-17, 2e-17}, true);
  signal<V> out;
  ASSERT_EQ(TWIN(s_lin_regres2)(&v, &out), 0);
  EXPECT_NEAR(wide(out.data[19]), 1, 1e-6);
  if constexpr (is_double<V>) {
    const signal<V> tiny({0, 0, 1e-120, 2e-120, 2e-120, 1e-120}, true);
    ASSERT_EQ(TWIN(s_lin_regres2)(&tiny, &out), 0);
    EXPECT_NEAR(wide(out.data[19]), 0.5, 1e-12);
  }
}

}  // namespace
}  // namespace sigpak::test
